// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/SettingsWindow.h"
#include "quillet/settings/UserSettings.h"
#include "support/FakeInstallation.h"
#include "support/FakePlatform.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace
{

class SettingsTest : public testing::Test
{
protected:
    QTemporaryDir folder;
    QSettings store{folder.filePath(QStringLiteral("quillet.conf")), QSettings::IniFormat};
    UserSettings settings{store};
    fake::Accessibility accessibility;
    fake::Installation installation;
    QString modelFile = folder.filePath(QStringLiteral("backend.ini"));
    QString commandsFile = folder.filePath(QStringLiteral("commands.ini"));
    bool holdsShortcut = true;
    QString report = QStringLiteral("all is well");
    QString server = QStringLiteral("tiny (127.0.0.1:11434)");
    bool agreed = true;
    std::unique_ptr<SettingsWindow> window = makeWindow();

    std::unique_ptr<SettingsWindow> makeWindow()
    {
        return std::make_unique<SettingsWindow>(SettingsWindow::Collaborators{
            accessibility,
            installation,
            settings,
            {modelFile,
             [this](QObject *, auto told) {
                 if (!server.isEmpty())
                     told(server, agreed);
             },
             [this](bool answer) { agreed = answer; },
             [this](QObject *, auto told) {
                 const QSettings file(modelFile, QSettings::IniFormat);
                 told(QStringLiteral("by ") + file.value(QStringLiteral("model/url")).toString());
             }},
            [this] { return holdsShortcut; },
            [this](QObject *, auto told) { told(report); },
            nullptr,
            {commandsFile, [](QObject *, const QString &identifier, auto told) {
                 told(u"tried "_qs + identifier);
             }}});
    }

    template <typename Widget> Widget *named(const char *name)
    {
        for (Widget *widget : window->findChildren<Widget *>())
            if (widget->accessibleName() == QString::fromUtf8(name))
                return widget;
        return nullptr;
    }

    QString allText() const
    {
        QString all;
        for (const QLabel *label : window->findChildren<QLabel *>())
            if (!label->isHidden())
                all += label->text() + u'\n';
        return all;
    }
};

TEST_F(SettingsTest, ChoicesAreKeptInTheFileAndAnnouncedOnce)
{
    EXPECT_EQ(settings.shortcut(), QKeySequence(Qt::META | Qt::SHIFT | Qt::Key_Q));
    int changes = 0;
    QObject::connect(&settings, &UserSettings::shortcutChanged, [&] { ++changes; });
    QObject::connect(&settings, &UserSettings::excludedProgramsChanged, [&] { ++changes; });
    settings.setShortcut({});
    settings.setShortcut({});
    settings.setExcluded(QStringLiteral("Editor"), true);
    settings.setExcluded(QStringLiteral("Editor"), true);
    settings.setExcluded({}, true);
    EXPECT_EQ(changes, 2);
    UserSettings later(store);
    EXPECT_TRUE(later.shortcut().isEmpty()) << "none is a choice too";
    EXPECT_TRUE(later.isExcluded(QStringLiteral("Editor")));
    EXPECT_FALSE(later.isExcluded(QStringLiteral("Edit")));
    later.setExcluded(QStringLiteral("Editor"), false);
    EXPECT_TRUE(later.excludedPrograms().isEmpty());
}

TEST_F(SettingsTest, TheShortcutIsOneCombinationAndAConflictIsSaid)
{
    holdsShortcut = false;
    auto *edit = named<QKeySequenceEdit>("Shortcut");
    edit->setKeySequence(QKeySequence(Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_B));
    Q_EMIT edit->editingFinished();
    EXPECT_EQ(settings.shortcut(), QKeySequence(Qt::CTRL | Qt::Key_A));
    EXPECT_TRUE(allText().contains(QStringLiteral("not free")));
    named<QPushButton>("No shortcut")->click();
    EXPECT_TRUE(settings.shortcut().isEmpty());
    EXPECT_FALSE(allText().contains(QStringLiteral("not free")));
}

TEST_F(SettingsTest, EachChangeIsInForceAtOnce)
{
    QCheckBox *start = nullptr;
    for (QCheckBox *box : window->findChildren<QCheckBox *>())
        if (box->text().startsWith(QStringLiteral("Start")))
            start = box;
    ASSERT_TRUE(start);
    EXPECT_FALSE(start->isChecked());
    start->click();
    EXPECT_TRUE(installation.atLogin);
    start->click();
    EXPECT_FALSE(installation.atLogin);

    settings.setExcluded(QStringLiteral("Editor"), true);
    settings.setExcluded(QStringLiteral("Browser"), true);
    auto *programs = window->findChild<QListWidget *>();
    ASSERT_EQ(programs->count(), 2) << "also while the window is open";
    programs->setCurrentRow(0);
    for (QPushButton *button : window->findChildren<QPushButton *>())
        if (button->text() == QStringLiteral("Remove"))
            button->click();
    EXPECT_EQ(settings.excludedPrograms(), QStringList{QStringLiteral("Browser")});

    named<QPushButton>("Change the permission")->click();
    EXPECT_EQ(accessibility.settingsOpened, 1);
    EXPECT_TRUE(allText().contains(QStringLiteral("may read and write")));
    accessibility.trusted = false;
    QEvent back(QEvent::WindowActivate);
    QCoreApplication::sendEvent(window.get(), &back);
    EXPECT_TRUE(allText().contains(QStringLiteral("may not see")));
}

TEST_F(SettingsTest, TheModelGoesToTheBackendsFileWhichOnlyTheUserReads)
{
    QSettings(modelFile, QSettings::IniFormat).setValue(QStringLiteral("model/window"), 8192);
    window = makeWindow();
    const auto fields = window->findChildren<QLineEdit *>();
    QLineEdit *key = nullptr;
    for (QLineEdit *field : fields) {
        if (field->echoMode() == QLineEdit::Password)
            key = field;
        if (!field->placeholderText().isEmpty()) {
            field->setText(QStringLiteral(" http://127.0.0.1:8080 "));
            Q_EMIT field->editingFinished();
        }
    }
    ASSERT_TRUE(key);
    key->setText(QStringLiteral("k"));
    Q_EMIT key->editingFinished();
    QSettings file(modelFile, QSettings::IniFormat);
    EXPECT_EQ(file.value(QStringLiteral("model/url")), QStringLiteral("http://127.0.0.1:8080"));
    EXPECT_EQ(file.value(QStringLiteral("model/key")), QStringLiteral("k"));
    EXPECT_EQ(file.value(QStringLiteral("model/window")).toInt(), 8192) << "the rest stays";
    EXPECT_EQ(QFile::permissions(modelFile) & (QFile::ReadGroup | QFile::ReadOther), 0);
    key->clear();
    Q_EMIT key->editingFinished();
    EXPECT_FALSE(QSettings(modelFile, QSettings::IniFormat).contains(QStringLiteral("model/key")));

    // What has just been typed is what is tried.
    for (QPushButton *button : window->findChildren<QPushButton *>())
        if (button->text() == QStringLiteral("Try It"))
            button->click();
    EXPECT_TRUE(allText().contains(QStringLiteral("by http://127.0.0.1:8080")));
}

TEST_F(SettingsTest, AFoundServerIsChosenAndLeft)
{
    const auto choice = [this]() -> QCheckBox * {
        for (QCheckBox *box : window->findChildren<QCheckBox *>())
            if (!box->isHidden() && box->text().contains(server) && !server.isEmpty())
                return box;
        return nullptr;
    };
    ASSERT_TRUE(choice());
    EXPECT_TRUE(choice()->isChecked());
    choice()->click();
    EXPECT_FALSE(agreed);
    server.clear();
    window = makeWindow();
    EXPECT_FALSE(choice());
}

TEST_F(SettingsTest, TheDoctorsReportIsShownWhenAskedForAndCopied)
{
    auto *shown = named<QPlainTextEdit>("Does Quillet work here?");
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->isHidden());
    window->showDoctor();
    EXPECT_EQ(shown->toPlainText(), report);
    for (QPushButton *button : window->findChildren<QPushButton *>())
        if (button->text() == QStringLiteral("Copy for a Bug Report"))
            button->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), report);
}

TEST_F(SettingsTest, TheKeyboardReachesEverythingAndEscapeCloses)
{
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), 60'000));
    QSet<QWidget *> reached;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(window->focusWidget() ? window->focusWidget() : window.get(), Qt::Key_Tab);
        if (window->focusWidget())
            reached.insert(window->focusWidget());
    }
    EXPECT_TRUE(reached.contains(named<QPushButton>("Change the permission")));
    EXPECT_TRUE(reached.contains(window->findChild<QListWidget *>()));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

} // namespace

TEST_F(SettingsTest, AnOwnCommandIsMadeTriedAndRemoved)
{
    auto *section = window->findChild<OwnCommandsSection *>();
    const auto button = [&](const char *name) -> QPushButton * {
        for (QPushButton *each : section->findChildren<QPushButton *>()) {
            if (each->accessibleName() == QLatin1StringView(name))
                return each;
        }
        return nullptr;
    };
    auto *instruction = section->findChild<QPlainTextEdit *>();
    button("New command")->click();
    auto *name = qobject_cast<QLineEdit *>(section->focusWidget());
    ASSERT_TRUE(name);
    QTest::keyClicks(name, QStringLiteral("Rhyme"));
    button("Try the command")->click();
    EXPECT_TRUE(OwnCommands::read(commandsFile).isEmpty()) << "not complete yet";
    instruction->setPlainText(QStringLiteral("Make it rhyme."));
    button("Try the command")->click();
    ASSERT_EQ(OwnCommands::read(commandsFile).size(), 1);
    const OwnCommand made = OwnCommands::read(commandsFile).first();
    EXPECT_EQ(made.identifier, u"own-rhyme"_qs);
    EXPECT_EQ(made.instruction, u"Make it rhyme."_qs);
    bool isTried = false;
    for (const QLabel *label : section->findChildren<QLabel *>())
        isTried = isTried || label->text() == u"tried own-rhyme"_qs;
    EXPECT_TRUE(isTried);

    // Another file in its place is shown when the user comes back.
    OwnCommands::write(commandsFile, {{u"own-b"_qs, u"B"_qs, u"be"_qs, {}, {}}});
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(section, &activation);
    EXPECT_EQ(instruction->toPlainText(), u"be"_qs);
    button("Remove the command")->click();
    EXPECT_TRUE(OwnCommands::read(commandsFile).isEmpty());
}
