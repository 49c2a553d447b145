// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/fakehost.h>

#include <reader/datareader.h>
#include <ui/overviewform.h>

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

/*! Finds the window's reader, which has no parent, by the detection timer that it makes. */
class ReaderFinder : public QObject
{
public:
    ReaderFinder() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (reader.isNull())
            reader = qobject_cast<DataReader *>(object);
        return QObject::eventFilter(object, event);
    }

    QPointer<DataReader> reader;
};

/*! A window with a host, as the plug-in makes it. */
struct FormBench
{
    FormBench()
    {
        form->setHostInterface(&host);
        host.sdoClient.setValue(1, 0x6000, 0, 1u);
        host.sdoClient.setValue(1, 0x6000, 1, 4u);
        host.sdoClient.setValue(5, 0x6000, 0, 1u);
        host.sdoClient.setValue(5, 0x6000, 1, 6u);
    }

    ~FormBench()
    {
        form.reset();
        delete finder.reader; // outlives the window, but must not outlive the host
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = form->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("The window has no %s", name);
        return widget;
    }

    void press(const char *name) const { find<QPushButton>(name)->click(); }

    QStringList components() const
    {
        const auto *tree = find<QTreeWidget>("treeWidget");
        QStringList names;
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            names.append(tree->topLevelItem(i)->text(0));
        return names;
    }

    /*! Lets nodes be heard and the detection end at once, as soon as the run has begun. */
    void answerRun(const QList<quint8> &nodeIds)
    {
        QTimer::singleShot(0, &finder, [this, nodeIds] {
            for (const quint8 nodeId : nodeIds)
                host.hub.heartbeat(nodeId);
            finder.reader->findChild<QTimer *>()->setInterval(0);
        });
    }

    void read(const QList<quint8> &nodeIds)
    {
        answerRun(nodeIds);
        press("btnRead");
    }

    ReaderFinder finder;
    FakeHost host;
    std::unique_ptr<OverviewForm> form = std::make_unique<OverviewForm>(nullptr);
};
