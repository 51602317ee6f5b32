// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ValueWriter.h"

#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace platform;
using namespace platform::linux_;
using namespace std::chrono_literals;

namespace
{

/// A program with one input, as good or bad as a test wants it.
struct Program {
    QString text{};
    bool takesEdits = true;
    bool isUniform = true;
    bool hasParagraphs = false;
    /// Whether it does what it says yes to.
    bool obeys = true;
    bool obeysContents = true;
    bool answers = true;
    bool canAddress = true;
    bool selects = true;
    bool hasFocus = true;
    /// How often it is asked for the focus in vain.
    int refusals = 0;
    /// What it makes of each text by itself.
    std::function<QString(QString)> changes = [](QString taken) { return taken; };
    /// What becomes of typed keys, one after the other; Typed when there are no more.
    QList<TypingResult> typing{};
    /// How many readings show the old text still.
    int lateness = 0;
    std::function<void()> onRead = [] {};

    std::optional<qsizetype> caret{};
    QStringList asked{};
    std::pair<qsizetype, qsizetype> selection{};
    QString shown{};

    void replace(qsizetype position, qsizetype length, const QString &by)
    {
        text = changes(text.first(position) + by + text.sliced(position + length));
    }
};

class Input : public TextInput
{
public:
    explicit Input(Program &program)
        : m_program(program)
    {
    }

    void read(Reader reader) override
    {
        if (!m_program.answers)
            return;
        m_program.onRead();
        if (m_program.shown.isNull() || m_program.lateness-- <= 0)
            m_program.shown = m_program.text;
        reader(Content{m_program.shown, m_program.isUniform, m_program.hasParagraphs,
                       m_program.caret});
    }
    bool takesEdits() const override { return m_program.takesEdits; }
    bool canAddress(qsizetype, qsizetype) const override { return m_program.canAddress; }
    void edit(const TextEdit &edit, Done done) override
    {
        m_program.asked.append(QStringLiteral("edit %1+%2 %3")
                                   .arg(edit.position)
                                   .arg(edit.length)
                                   .arg(edit.replacement));
        if (m_program.obeys)
            m_program.replace(edit.position, edit.length, edit.replacement);
        done(true);
    }
    void setContents(const QString &text, Done done) override
    {
        m_program.asked.append(QStringLiteral("contents"));
        if (m_program.obeysContents)
            m_program.text = m_program.changes(text);
        done(true);
    }
    void select(qsizetype position, qsizetype length, Done done) override
    {
        m_program.selection = {position, length};
        done(m_program.selects && m_program.hasFocus);
    }
    void selectAll(Done done) override
    {
        m_program.selection = {0, m_program.text.size()};
        done(m_program.hasFocus);
    }
    void setCaret(qsizetype position) override { m_program.caret = position; }
    bool hasFocus() override { return m_program.hasFocus; }
    void takeFocus() override
    {
        m_program.asked.append(QStringLiteral("focus"));
        m_program.hasFocus = m_program.refusals-- <= 0;
    }
    std::unique_ptr<TypingTarget> typingTarget(const QString &) override { return nullptr; }

private:
    Program &m_program;
};

/// Types into the program's selection.
class Keys : public Typist
{
public:
    explicit Keys(Program &program)
        : m_program(program)
    {
    }

    void type(std::unique_ptr<TypingTarget>, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion) override
    {
        const TypingResult result =
            m_program.typing.isEmpty() ? TypingResult::Typed : m_program.typing.takeFirst();
        QString keys;
        for (const KeyboardEvent &event : events) {
            if (event.keyDown)
                keys += event.unicodeString;
        }
        const auto [position, length] = std::exchange(m_program.selection, {});
        m_program.asked.append(QStringLiteral("type %1+%2 %3").arg(position).arg(length).arg(keys));
        if (result == TypingResult::Typed)
            m_program.replace(position, length, keys == QChar(u'\b') ? QString() : keys);
        else if (result != TypingResult::NoTarget)
            m_program.replace(position, length, keys.first(keys.size() / 2));
        if (result == TypingResult::Misplaced)
            m_program.hasFocus = false;
        completion(result);
    }

private:
    Program &m_program;
};

WriteOutcome write(Program &program, const char *text, std::chrono::milliseconds unchanged = 30ms)
{
    Keys keys(program);
    std::optional<WriteOutcome> outcome;
    const ValueWriter::Limits limits{1ms,           1ms, 30ms, unchanged, unchanged,
                                     unchanged * 2, 1s,  1ms,  200ms};
    auto *writer = new ValueWriter(
        std::make_unique<Input>(program), QString::fromUtf8(text), keys,
        [&](const WriteOutcome &result) { outcome = result; }, limits);
    writer->start();
    if (!waitUntil([&] { return outcome.has_value(); }))
        ADD_FAILURE() << "no outcome";
    return outcome.value_or(WriteOutcome());
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

const QString before = text("I has a cat. Nothing else is to be changed here, which goes on for so "
                            "long that nobody wants to see all of it typed again. It end here. And "
                            "then some more of it, so that two corrections are further apart than "
                            "is worth typing at once; that is the reason why it goes on an on.");
const QString after = QString(before)
                          .replace(text("I has"), text("I have"))
                          .replace(text("on an on"), text("on and on"));

} // namespace

TEST(ValueWriter, HasTheProgramReplaceOnlyWhatDiffers)
{
    Program plain{.text = before};
    EXPECT_EQ(write(plain, after.toUtf8().constData()), WriteOutcome::written());
    EXPECT_EQ(plain.text, after);
    EXPECT_EQ(plain.asked.size(), 1) << "one step to undo where no format can be lost";
    EXPECT_TRUE(plain.asked.first().startsWith(text("edit 2+")));

    Program inTheMiddle{.text = before, .caret = 40};
    write(inTheMiddle, after.toUtf8().constData());
    EXPECT_EQ(inTheMiddle.caret, 41) << "behind the same word, although it was replaced as well";

    Program rich{.text = before, .isUniform = false};
    const QString corrected = QString(after).replace(text("It end"), text("It ends"));
    EXPECT_EQ(write(rich, corrected.toUtf8().constData()), WriteOutcome::written());
    EXPECT_EQ(rich.asked,
              (QStringList{QStringLiteral("edit %1+2 and").arg(before.size() - 6),
                           QStringLiteral("edit %1+3 ends").arg(before.indexOf(text("end here"))),
                           text("edit 2+3 have")}));

    Program document{
        .text = text("A\nb\nmid C\nend\nlast D"), .isUniform = false, .hasParagraphs = true};
    EXPECT_EQ(write(document, "A mid C\n\nend\nlast E"), WriteOutcome::written());
    EXPECT_EQ(document.asked, (QStringList{text("edit 19+1 E"), text("edit 1+12  mid C\n\nend")}))
        << "lines correspond from the first that comes or goes to the end of the last";

    Program same{.text = before};
    EXPECT_EQ(write(same, before.toUtf8().constData()), WriteOutcome::written());
    EXPECT_TRUE(same.asked.isEmpty());
}

TEST(ValueWriter, TypesOverWhatDiffersWhereTheProgramOffersNothing)
{
    Program program{.text = before, .takesEdits = false};
    EXPECT_EQ(write(program, after.toUtf8().constData()), WriteOutcome::written());
    EXPECT_EQ(program.text, after);
    EXPECT_EQ(program.asked, (QStringList{QStringLiteral("type %1+2 and").arg(before.size() - 6),
                                          text("type 2+3 have")}));

    Program insertion{.text = text("a👍🏽 c"), .takesEdits = false};
    EXPECT_EQ(write(insertion, "a👍🏽b c"), WriteOutcome::written());
    EXPECT_EQ(insertion.asked, QStringList{text("type 1+4 👍🏽b")})
        << "over what can be selected";

    Program deletion{.text = text("one two"), .takesEdits = false};
    EXPECT_EQ(write(deletion, "one"), WriteOutcome::written());
    EXPECT_EQ(write(deletion, ""), WriteOutcome::written());
    EXPECT_EQ(write(deletion, "new"), WriteOutcome::written());
    EXPECT_EQ(deletion.asked,
              (QStringList{text("type 3+4 \b"), text("type 0+3 \b"), text("type 0+0 new")}));

    Program whole{.text = text("one two"), .takesEdits = false, .canAddress = false};
    EXPECT_EQ(write(whole, "one three"), WriteOutcome::written());
    EXPECT_EQ(whole.asked, QStringList{text("type 0+7 one three")});

    Program unselectable{.text = text("one two"), .takesEdits = false, .selects = false};
    EXPECT_EQ(write(unselectable, "one three"), WriteOutcome::written());
    EXPECT_EQ(unselectable.asked, QStringList{text("type 0+7 one three")});
}

TEST(ValueWriter, BelievesOnlyWhatIsReadBack)
{
    Program liar{.text = text("old"), .obeys = false};
    EXPECT_EQ(write(liar, "new"), WriteOutcome::written());
    EXPECT_EQ(liar.asked, (QStringList{text("edit 0+3 new"), text("contents")}));

    Program twice{.text = text("old"), .obeys = false, .obeysContents = false};
    EXPECT_EQ(write(twice, "new"), WriteOutcome::written());
    EXPECT_EQ(twice.asked.last(), text("type 0+3 new"));

    Program elsewhere{.text = text("old"),
                      .obeys = false,
                      .obeysContents = false,
                      .typing = {TypingResult::NoTarget}};
    const WriteOutcome outcome = write(elsewhere, "new");
    EXPECT_FALSE(outcome.isWritten());
    EXPECT_FALSE(outcome.isDamaged);
    EXPECT_EQ(elsewhere.text, text("old"));

    Program late{.text = text("old"), .lateness = 4};
    EXPECT_EQ(write(late, "new", 60s), WriteOutcome::written());
    EXPECT_EQ(late.asked.size(), 1) << "a late program is not asked twice";
}

TEST(ValueWriter, AChangeOfTheProgramsOwnIsSuccess)
{
    const auto expandTabs = [](QString taken) { return taken.replace(u'\t', text("    ")); };
    Program program{.text = text("a"), .changes = expandTabs};
    const WriteOutcome outcome = write(program, "\tb");
    EXPECT_EQ(outcome.kind, WriteOutcome::Kind::ChangedByProgram);
    EXPECT_EQ(outcome.changedCharacters, 4);
    EXPECT_EQ(program.asked.size(), 1) << "and nothing is written twice";

    int readings = 0;
    Program slow{.text = text("a"), .changes = expandTabs};
    slow.onRead = [&] {
        if (++readings == 4)
            slow.text = text("\tb");
    };
    EXPECT_EQ(write(slow, "\tb", 60s), WriteOutcome::written()) << "it had not finished yet";
}

TEST(ValueWriter, PutsTheOldTextBackAfterAFailure)
{
    int edits = 0;
    Program eater{.text = text("some words"), .changes = [&edits](QString taken) {
                      return edits++ == 0 ? taken.remove(u'e') : taken;
                  }};
    WriteOutcome outcome = write(eater, "other letters");
    EXPECT_FALSE(outcome.isWritten());
    EXPECT_FALSE(outcome.isDamaged);
    EXPECT_EQ(eater.text, text("some words"));

    Program stubborn{.text = text("some words"),
                     .changes = [](QString taken) { return taken.remove(u'e'); }};
    outcome = write(stubborn, "other letters");
    EXPECT_FALSE(outcome.isWritten());
    EXPECT_TRUE(outcome.isDamaged) << "it could not be put back, and says so";

    Program framed{.text = text("some words"),
                   .takesEdits = false,
                   .refusals = 2,
                   .typing = {TypingResult::Misplaced, TypingResult::Misplaced}};
    outcome = write(framed, "some other words of mine");
    EXPECT_FALSE(outcome.isWritten());
    EXPECT_TRUE(outcome.keysMayBeElsewhere);
    EXPECT_FALSE(outcome.isDamaged);
    EXPECT_EQ(framed.text, text("some words"));
    EXPECT_EQ(framed.asked.count(text("focus")), 4) << "once more when it was lost again";

    Program lossy{.text = text("some words"),
                  .takesEdits = false,
                  .typing = {TypingResult::Failed, TypingResult::Failed}};
    EXPECT_FALSE(write(lossy, "some other words of mine").isDamaged)
        << "there is time to try again";
    EXPECT_EQ(lossy.text, text("some words"));

    Program busy{.text = text("some words"),
                 .takesEdits = false,
                 .typing = {TypingResult::Interrupted, TypingResult::Interrupted}};
    EXPECT_TRUE(write(busy, "other letters").isDamaged) << "the user stopped both";
}

TEST(ValueWriter, AProgramThatDoesNotAnswerIsNotWaitedForForLong)
{
    Program silent{.text = text("old"), .answers = false};
    const WriteOutcome outcome = write(silent, "new");
    EXPECT_EQ(outcome, WriteOutcome::notWritten(AXError::CannotComplete));
}
