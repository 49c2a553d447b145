// SPDX-License-Identifier: MIT
#include "hostmenus.h"

#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QKeySequence>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>

namespace {

struct LanguageName
{
    const char *language;
    const char *name; // by which its speakers know it, UTF-8
};

constexpr LanguageName languageNames[] = {
    {"de", "Deutsch"}, {"en", "English"}, {"fr", "Français"}, {"nl", "Nederlands"}, {"zh_CN", "简体中文"},
};

QString languageName(const QString &language)
{
    for (const LanguageName &row : languageNames) {
        if (language == QLatin1String(row.language))
            return QString::fromUtf8(row.name);
    }
    const QString name = QLocale(language).nativeLanguageName();
    return name.isEmpty() ? language : name;
}

/*! Whether the computer can show a language; only for Chinese fonts are often missing. */
bool hasFontFor(const QString &language)
{
    return QLocale(language).language() != QLocale::Chinese
           || !QFontDatabase().families(QFontDatabase::SimplifiedChinese).isEmpty();
}

/*! Of "&Quit" as of "word(&Q)", which languages without Latin letters have. */
QString withoutMnemonic(QString text)
{
    static const QRegularExpression letterBehind(QStringLiteral("\\(&\\w\\)"));
    return text.remove(letterBehind).remove(QLatin1Char('&')).remove(QLatin1String("..."));
}

} // namespace

QString HostMenus::languageLabel(const QString &language, bool hasFont)
{
    return hasFont ? languageName(language)
                   : tr("%1 (no font for it is installed)")
                         .arg(QLocale::languageToString(QLocale(language).language()));
}

HostMenus::HostMenus(QMainWindow *window, PluginActions *plugin)
    : QObject(window)
    , saveBundle(makeAction("actionSaveBundle"))
    , quit(makeAction("actionQuit", QKeySequence(Qt::CTRL + Qt::Key_Q)))
    , connectBus(makeAction("actionConnect", QKeySequence(Qt::CTRL + Qt::Key_K)))
    , disconnectBus(makeAction("actionDisconnect", QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_K)))
    , cancelRead(makeAction("actionCancelRead", QKeySequence(Qt::Key_Escape)))
    , refreshInterfaces(makeAction("actionRefresh", QKeySequence(Qt::CTRL + Qt::Key_R)))
    , patience(makeAction("actionPatience"))
    , resetLayout(makeAction("actionResetLayout"))
    , keyList(makeAction("actionKeyList", QKeySequence(Qt::Key_F1)))
    , about(makeAction("actionAbout"))
    , aboutQt(makeAction("actionAboutQt"))
    , m_window(window)
    , m_plugin(plugin)
    , m_file(window->menuBar()->addMenu(QString()))
    , m_recent(new QMenu(window))
    , m_bus(window->menuBar()->addMenu(QString()))
    , m_view(window->menuBar()->addMenu(QString()))
    , m_language(window->menuBar()->addMenu(QString()))
    , m_help(window->menuBar()->addMenu(QString()))
    , m_languages(new QActionGroup(this))
{
    using Kind = PluginActions::Kind;
    plugin->action(Kind::Open)->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_O));
    plugin->action(Kind::Export)->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_S));
    plugin->action(Kind::SaveReport)->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_P));
    plugin->action(Kind::Read)->setShortcut(QKeySequence(Qt::Key_F5));
    quit->setMenuRole(QAction::QuitRole);
    about->setMenuRole(QAction::AboutRole);
    aboutQt->setMenuRole(QAction::AboutQtRole);

    fillMenus();
    nameMenus();
    connect(m_languages, &QActionGroup::triggered, this,
            [this](const QAction *action) { emit languageChosen(action->data().toString()); });
    showState(BusConnection::State::Disconnected, false, false);
    retranslate();
}

void HostMenus::fillMenus()
{
    using Kind = PluginActions::Kind;
    m_file->addAction(m_plugin->action(Kind::Open));
    m_file->addMenu(m_recent);
    m_file->addActions({m_plugin->action(Kind::Export), m_plugin->action(Kind::SaveReport)});
    m_file->addSeparator();
    m_file->addAction(saveBundle);
    m_file->addSeparator();
    m_file->addAction(quit);
    m_bus->addActions({connectBus, disconnectBus, refreshInterfaces});
    m_bus->addSeparator();
    m_bus->addActions({m_plugin->action(Kind::Read), cancelRead});
    m_bus->addSeparator();
    m_bus->addAction(patience);
    for (const char *name : {"actionPageOverview", "actionPageCheckup", "actionPageLive", "actionPageTrace",
                             "actionPageArchive"}) {
        const int number = m_pages.size();
        QAction *page = makeAction(name, QKeySequence(int(Qt::CTRL) + int(Qt::Key_1) + number));
        connect(page, &QAction::triggered, this, [this, number] { emit pageChosen(number); });
        m_pages.append(page);
        m_view->addAction(page);
    }
    m_view->addSeparator();
    m_view->addAction(resetLayout);
    m_help->addAction(keyList);
    m_help->addSeparator();
    m_help->addActions({about, aboutQt});
}

void HostMenus::nameMenus()
{
    m_file->setObjectName(QStringLiteral("fileMenu"));
    m_recent->setObjectName(QStringLiteral("recentMenu"));
    m_recent->setToolTipsVisible(true);
    m_bus->setObjectName(QStringLiteral("busMenu"));
    m_view->setObjectName(QStringLiteral("viewMenu"));
    m_language->setObjectName(QStringLiteral("languageMenu"));
    m_help->setObjectName(QStringLiteral("helpMenu"));
}

void HostMenus::setLanguages(const QStringList &languages, const QString &chosen)
{
    m_language->clear();
    const QList<QAction *> previous = m_languages->actions();
    qDeleteAll(previous);

    const auto add = [this, &chosen](const QString &language, const QString &name) {
        QAction *action = m_languages->addAction(name);
        action->setObjectName(QStringLiteral("actionLanguage_") + language);
        action->setData(language);
        action->setCheckable(true);
        action->setChecked(language == chosen);
        m_language->addAction(action);
        return action;
    };
    m_systemLanguage = add(QString(), QString());
    m_language->addSeparator();
    for (const QString &language : languages)
        add(language, languageLabel(language, hasFontFor(language)));
    retranslate();
}

void HostMenus::setRecentFiles(const QStringList &files)
{
    m_recent->clear();
    for (const QString &file : files) {
        QString name = QFileInfo(file).fileName();
        QAction *action = m_recent->addAction(name.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setToolTip(QDir::toNativeSeparators(file));
        connect(action, &QAction::triggered, this, [this, file] { emit recentFileChosen(file); });
    }
    m_recent->setEnabled(!files.isEmpty() && m_plugin->action(PluginActions::Kind::Open)->isEnabled());
}

void HostMenus::setMessagesAction(QAction *action)
{
    m_messages = action;
    m_messages->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_M));
    m_view->insertAction(resetLayout, action);
}

void HostMenus::addCheckup(QAction *checkup, QAction *save, QAction *report)
{
    using Kind = PluginActions::Kind;
    checkup->setShortcut(QKeySequence(Qt::Key_F6));
    save->setShortcut(QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S));
    report->setShortcut(QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_P));
    m_bus->insertAction(cancelRead, checkup);
    QAction *behind = m_file->actions().at(m_file->actions().indexOf(m_plugin->action(Kind::SaveReport)) + 1);
    m_file->insertActions(behind, {save, report});
}

void HostMenus::showState(BusConnection::State state, bool isReading, bool isCheckingUp)
{
    const bool isClosed = state == BusConnection::State::Disconnected;
    connectBus->setEnabled(isClosed);
    disconnectBus->setEnabled(!isClosed);
    refreshInterfaces->setEnabled(isClosed);
    cancelRead->setEnabled(isReading || isCheckingUp);
    m_plugin->setBusState(state == BusConnection::State::Connected, isReading);
    m_recent->setEnabled(!m_recent->isEmpty() && m_plugin->action(PluginActions::Kind::Open)->isEnabled());
}

void HostMenus::retranslate()
{
    using Kind = PluginActions::Kind;
    m_file->setTitle(tr("&File"));
    m_plugin->action(Kind::Open)->setText(tr("&Open saved file..."));
    m_recent->setTitle(tr("Open re&cent file"));
    m_plugin->action(Kind::Export)->setText(tr("&Export..."));
    m_plugin->action(Kind::SaveReport)->setText(tr("Save &PDF report"));
    saveBundle->setText(tr("Save support &bundle..."));
    quit->setText(tr("&Quit"));

    m_bus->setTitle(tr("B&us"));
    connectBus->setText(tr("&Connect"));
    disconnectBus->setText(tr("&Disconnect"));
    refreshInterfaces->setText(tr("Re&fresh interfaces"));
    m_plugin->action(Kind::Read)->setText(tr("&Read all data"));
    cancelRead->setText(tr("Ca&ncel read"));
    patience->setText(tr("&Patience with slow nodes..."));

    m_view->setTitle(tr("&View"));
    m_pages.at(0)->setText(tr("&Overview"));
    m_pages.at(1)->setText(tr("&Check-up page"));
    m_pages.at(2)->setText(tr("&Live"));
    m_pages.at(3)->setText(tr("&Trace"));
    m_pages.at(4)->setText(tr("&Archive"));
    resetLayout->setText(tr("&Reset layout"));

    m_language->setTitle(tr("&Language"));
    if (m_systemLanguage != nullptr)
        m_systemLanguage->setText(tr("&System"));
    const QList<QAction *> languages = m_languages->actions();
    for (QAction *action : languages) {
        const QString language = action->data().toString();
        if (!language.isEmpty())
            action->setText(languageLabel(language, hasFontFor(language)));
    }

    m_help->setTitle(tr("&Help"));
    keyList->setText(tr("&Key list"));
    about->setText(tr("&About Draxel"));
    aboutQt->setText(tr("About &Qt"));
}

QVector<QPair<QString, QString>> HostMenus::shortcuts() const
{
    QVector<QPair<QString, QString>> keys;
    for (const QMenu *menu : {m_file, m_bus, m_view, m_help}) {
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions) {
            if (!action->shortcut().isEmpty())
                keys.append(
                    {action->shortcut().toString(QKeySequence::NativeText), withoutMnemonic(action->text())});
        }
    }
    return keys;
}

QAction *HostMenus::makeAction(const char *name, const QKeySequence &shortcut)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
}
