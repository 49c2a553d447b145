// SPDX-License-Identifier: MIT
#include "informationdialogs.h"

#include <details/overviewtr.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/nodeview.h>

#include <QAction>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLoggingCategory>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpacerItem>

#include <iterator>

namespace {

Q_LOGGING_CATEGORY(lcDialogs, "ui.dialogs")

/*! Gives the text of a dialog, or nothing when there is nothing to show a dialog for. */
using TextFunction = std::optional<QString> (*)(const NodeView &node, quint16 index);

/*! One dialog: what offers it, what it reads and what it shows. */
struct DialogDescription
{
    InformationDialog dialog;
    const char *actionText;
    const char *statusTip;
    quint16 index; // sub-index 0 decides whether the dialog is offered
    const char *title;
    TextFunction text;
};

std::optional<QString> deviceTypeText(const NodeView &node, quint16 index)
{
    return DataInterpreter::interpretDeviceType(node.value(index, 0).value_or(QVariant()));
}

std::optional<QString> errorRegisterText(const NodeView &node, quint16 index)
{
    return DataInterpreter::interpretErrorRegister(node.value(index, 0).value_or(QVariant()));
}

std::optional<QString> errorFieldText(const NodeView &node, quint16 index)
{
    const std::optional<quint32> count = node.entryCount(index);
    if (!count)
        return std::nullopt;

    QString text;
    node.forEachBefore(index, *count, [&text](quint8, const QVariant &value) {
        text += QString::number(value.toUInt()) + QLatin1Char('\n');
    });
    return text;
}

/*! One decoded line for each entry; empty when sub-index 0 is not stored. */
template<typename Decoder>
QString entryLines(const NodeView &node, quint16 index, Decoder decode)
{
    QString text;
    QVariant holder;
    if (!node.getValue(index, 0, holder))
        return text;
    node.followEntries(index, holder, [&text, decode](quint8, const QVariant &value) {
        text += decode(value) + QLatin1Char('\n');
    });
    return text;
}

QString specificationVersionText(const QVariant &value)
{
    QString label;
    QString text;
    DataInterpreter::interpretSpecificationVersions(value, label, text);
    return text;
}

std::optional<QString> specificationVersionsText(const NodeView &node, quint16 index)
{
    return QStringLiteral("CiA.part.version.revision\n") + entryLines(node, index, specificationVersionText);
}

std::optional<QString> securityStatusText(const NodeView &node, quint16 index)
{
    return entryLines(node, index, &DataInterpreter::interpretSecurityStatus);
}

// In the order of the menu.
constexpr DialogDescription dialogs[] = {
    {InformationDialog::DeviceType, QT_TRANSLATE_NOOP("OverviewForm", "Device Type"),
     QT_TRANSLATE_NOOP("OverviewForm", "Shows device type information"), Object::deviceType,
     QT_TRANSLATE_NOOP("OverviewForm", "Device information"), deviceTypeText},
    {InformationDialog::ErrorRegister, QT_TRANSLATE_NOOP("OverviewForm", "Error register"),
     QT_TRANSLATE_NOOP("OverviewForm", "Shows detailed error information"), Object::errorRegister,
     QT_TRANSLATE_NOOP("OverviewForm", "Error register"), errorRegisterText},
    // Deliberate: "occured" is written so.
    {InformationDialog::ErrorField, QT_TRANSLATE_NOOP("OverviewForm", "Error field"),
     QT_TRANSLATE_NOOP("OverviewForm", "Shows last occured errors"), Object::errorField,
     QT_TRANSLATE_NOOP("OverviewForm", "Error information"), errorFieldText},
    {InformationDialog::SpecificationVersions,
     QT_TRANSLATE_NOOP("OverviewForm", "Implemented specification versions"),
     QT_TRANSLATE_NOOP("OverviewForm", "Shows the implemented specifications"), Object::profileVersions,
     QT_TRANSLATE_NOOP("OverviewForm", "Implemented specification"), specificationVersionsText},
    {InformationDialog::SecurityStatus, QT_TRANSLATE_NOOP("OverviewForm", "Security Status"),
     QT_TRANSLATE_NOOP("OverviewForm", "Shows implemented security status"), Object::securityStatus,
     QT_TRANSLATE_NOOP("OverviewForm", "Security Status"), securityStatusText},
};

constexpr std::size_t positionOf(InformationDialog dialog)
{
    return static_cast<std::size_t>(dialog);
}

constexpr bool isInEnumOrder()
{
    for (std::size_t i = 0; i < std::size(dialogs); ++i) {
        if (positionOf(dialogs[i].dialog) != i)
            return false;
    }
    return true;
}

static_assert(std::size(dialogs) == InformationDialogs::count);
static_assert(isInEnumOrder());

/*! The text up to the last line that any device can fill; far more of them would hold up the window. */
QString cutLines(const QString &text)
{
    constexpr int lastLine = 5000; // 255 entries of eight lines are 2040

    int end = -1;
    for (int line = 0; line < lastLine; ++line) {
        end = text.indexOf(QLatin1Char('\n'), end + 1);
        if (end < 0)
            return text;
    }
    qCDebug(lcDialogs) << "A text of" << text.size() << "characters was cut after line" << lastLine;
    return text.left(end);
}

/*! Makes a message box at least \a width pixels wide, by an empty row at its end. */
void widen(QMessageBox &box, int width)
{
    auto *layout = qobject_cast<QGridLayout *>(box.layout());
    if (layout == nullptr)
        return;
    layout->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Expanding),
                    layout->rowCount(), 0, 1, layout->columnCount());
}

/*! The part of the screen of \a window that windows may cover. */
QRect roomFor(const QWidget &window)
{
    const QScreen *screen = QGuiApplication::screenAt(window.mapToGlobal(window.rect().center()));
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    return screen->availableGeometry();
}

/*! Lets the text of a message box scroll when it is higher than \a height allows: the buttons stay on the screen. */
void fit(QMessageBox &box, int height)
{
    auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    const int rest = 8 * box.fontMetrics().height(); // title, margins and buttons
    if (label == nullptr || label->sizeHint().height() <= height - rest)
        return;

    auto *area = new QScrollArea(&box);
    area->setFrameShape(QFrame::NoFrame);
    delete box.layout()->replaceWidget(label, area);
    const QSize text = label->sizeHint();
    area->setWidget(label);
    label->resize(text);
    area->setMinimumSize(text.width() + area->verticalScrollBar()->sizeHint().width(), height - rest);
}

void centre(QWidget &box, const QWidget &window)
{
    const QPoint position(window.x() + window.width() / 2 - box.width() / 2,
                          window.y() + window.height() / 2 - box.height() / 2);
    box.move(window.mapToGlobal(position));
}

} // namespace

InformationDialogs::InformationDialogs(QWidget &window)
    : m_window(window)
{
    for (QAction *&action : m_actions)
        action = new QAction(&window);
    retranslate();
}

void InformationDialogs::retranslate()
{
    for (const DialogDescription &description : dialogs) {
        QAction *dialogAction = action(description.dialog);
        dialogAction->setText(OverviewTr::tr(description.actionText));
        dialogAction->setStatusTip(OverviewTr::tr(description.statusTip));
    }
}

QAction *InformationDialogs::action(InformationDialog dialog) const
{
    return m_actions[positionOf(dialog)];
}

QList<QAction *> InformationDialogs::offeredActions(const NodeView &node) const
{
    QList<QAction *> offered;
    for (const DialogDescription &description : dialogs) {
        if (node.value(description.index, 0))
            offered.append(action(description.dialog));
    }
    return offered;
}

void InformationDialogs::show(InformationDialog dialog, const NodeView &node) const
{
    const DialogDescription &description = dialogs[positionOf(dialog)];
    if (const std::optional<QString> text = description.text(node, description.index))
        showInformation(OverviewTr::tr(description.title), cutLines(*text), QString(), QMessageBox::Ok, 1);
}

int InformationDialogs::showInformation(const QString &title, const QString &text,
                                        const QString &informativeText, QMessageBox::StandardButtons buttons,
                                        int flag) const
{
    Q_UNUSED(flag)
    constexpr int minimumWidth = 150; // pixels

    QMessageBox box;
    box.setWindowTitle(title);
    box.setInformativeText(informativeText);
    box.setText(text);
    box.setStandardButtons(buttons);
    widen(box, minimumWidth);
    const QRect room = roomFor(m_window);
    fit(box, room.height());
    box.show();
    centre(box, m_window);
    const int lowest = room.bottom() - box.frameGeometry().height();
    box.move(box.x(), qMax(room.top(), qMin(box.y(), lowest)));
    return box.exec();
}
