// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/OfflineEngine.h"

#include "backend/offline/Emojifier.h"
#include "backend/offline/GrammarChecker.h"
#include "backend/offline/Translator.h"
#include "backend/offline/rules/PhraseRule.h"
#include "backend/offline/text/Letters.h"

#include <QHash>

#include <mutex>

using namespace offline;

namespace
{

/// The result of a command that is to change the style, or a note when it changes
/// nothing.
OfflineAnswer changed(const QString &text, const QString &result)
{
    return {true, result == text ? QStringLiteral("\u24D8 Nothing to change") : result};
}

OfflineAnswer needsModel(const QString &task)
{
    return {false,
            task + QStringLiteral(" needs a language model: name one in "
                                  "~/.config/quillet/backend.ini under [model] with url=… and "
                                  "name=…, or start Ollama on this computer.")};
}

} // namespace

/// The parts of the engine, made when the first question comes.
class OfflineEngine::Private
{
public:
    explicit Private(OfflinePaths where)
        : lexicon(where.dictionaries)
        , m_paths(std::move(where))
    {
    }

    /// Everything that the rewriting of English takes.
    struct English {
        explicit English(const Private &engine)
            : grammar(engine.lexicon, engine.detector, verbs, engine.m_paths.rulesOff)
            , safe(u"concise.tsv", PhraseRule::Rows::Safe, verbs)
            , concise(u"concise.tsv", PhraseRule::Rows::All, verbs)
            , clear(u"clear.tsv", PhraseRule::Rows::All, verbs)
            , elevated(u"elevate.tsv", PhraseRule::Rows::All, verbs)
            , professional(u"professional.tsv", PhraseRule::Rows::All, verbs)
            , friendly(u"friendly.tsv", PhraseRule::Rows::All, verbs)
            , confident(u"confident.tsv", PhraseRule::Rows::All, verbs)
            , happy(u"happy.tsv", PhraseRule::Rows::All, verbs)
            , expanded(u"expand.tsv", PhraseRule::Rows::All, verbs)
        {
        }

        Verbs verbs;
        GrammarChecker grammar;
        PhraseRule safe;
        PhraseRule concise;
        PhraseRule clear;
        PhraseRule elevated;
        PhraseRule professional;
        PhraseRule friendly;
        PhraseRule confident;
        PhraseRule happy;
        PhraseRule expanded;
        Emojifier emojifier;
    };

    const English &english()
    {
        std::call_once(m_englishOnce, [this] { m_english = std::make_unique<English>(*this); });
        return *m_english;
    }

    const Translator &translator()
    {
        std::call_once(m_translatorOnce, [this] {
            m_translator =
                std::make_unique<Translator>(m_paths.apertium, m_paths.apertiumModes, detector);
        });
        return *m_translator;
    }

    /// The text with its mistakes corrected and the phrases of a table replaced.
    QString rephrased(const QString &text, const PhraseRule &phrases, const std::stop_token &stop)
    {
        QString corrected = english().grammar.corrected(text, stop);
        EditList edits;
        if (stop.stop_requested())
            return corrected;
        phrases.check(Document(corrected, lexicon, detector), edits);
        return edits.isEmpty() ? corrected
                               : english().grammar.withArticles(edits.applied(corrected));
    }

    QString emojified(const QString &text)
    {
        EditList edits;
        english().emojifier.check(Document(text, lexicon, detector), edits);
        return edits.applied(text);
    }

    Lexicon lexicon;
    LanguageDetector detector;

private:
    OfflinePaths m_paths;
    std::once_flag m_englishOnce;
    std::unique_ptr<English> m_english;
    std::once_flag m_translatorOnce;
    std::unique_ptr<Translator> m_translator;
};

OfflineEngine::OfflineEngine(OfflinePaths paths)
    : d(std::make_unique<Private>(std::move(paths)))
{
}

OfflineEngine::~OfflineEngine() = default;

void OfflineEngine::warmUp() const
{
    d->english();
    d->lexicon.load();
}

OfflineAnswer OfflineEngine::answer(const QString &command, const QString &text,
                                    const std::stop_token &stop) const
{
    static const QHash<QString, PhraseRule Private::English::*> rephrasings = {
        {QStringLiteral("quick-improve"), &Private::English::safe},
        {QStringLiteral("concise"), &Private::English::concise},
        {QStringLiteral("clear"), &Private::English::clear},
        {QStringLiteral("elevate"), &Private::English::elevated},
        {QStringLiteral("professional"), &Private::English::professional},
        {QStringLiteral("friendly"), &Private::English::friendly},
        {QStringLiteral("confident"), &Private::English::confident},
        {QStringLiteral("happy"), &Private::English::happy},
        {QStringLiteral("expand"), &Private::English::expanded},
    };
    static const QHash<QString, QString> beyondRules = {
        {QStringLiteral("reply-msg-copy"), QStringLiteral("Writing a reply")},
        {QStringLiteral("romantic"), QStringLiteral("A romantic tone")},
        {QStringLiteral("sarcastic"), QStringLiteral("A sarcastic tone")},
        {QStringLiteral("witty"), QStringLiteral("A witty tone")},
        {QStringLiteral("flirty"), QStringLiteral("A flirty tone")},
    };

    const bool translation = Translator::offers(command);
    const auto rephrasing = rephrasings.constFind(command);
    const bool rewriting = rephrasing != rephrasings.constEnd() || command == u"check-grammar" ||
                           command == u"emojify";
    if (!translation && !rewriting) {
        // What is left are languages.
        const QString language =
            QStringLiteral("Translating into ") + capitalised(command.left(40));
        return needsModel(beyondRules.value(command, language));
    }
    if (text.isEmpty())
        return {true, QString()};
    if (translation) {
        const Translator::Result result = d->translator().translate(text, command, stop);
        return {result.supported, result.text, result.remark};
    }
    if (command == u"check-grammar")
        return {true, d->english().grammar.corrected(text, stop)};
    if (command == u"emojify")
        return changed(text, d->emojified(text));
    return changed(text, d->rephrased(text, d->english().*(*rephrasing), stop));
}
