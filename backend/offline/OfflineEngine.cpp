#include "backend/offline/OfflineEngine.h"

#include "backend/offline/GrammarChecker.h"

#include <mutex>
#include <optional>

using namespace offline;

namespace
{

OfflineAnswer needsModel(const QString &task)
{
    return {false,
            QStringLiteral("%1 needs a language model: name one in ~/.config/quillet/backend.ini "
                           "under [model] with url=… and name=…, or start Ollama on this computer.")
                .arg(task)};
}

} // namespace

/// The parts of the engine, made when the first question comes.
class OfflineEngine::Private
{
public:
    explicit Private(const OfflinePaths &paths)
        : lexicon(paths.dictionaries)
    {
    }

    struct English {
        explicit English(const Lexicon &lexicon)
            : grammar(lexicon, detector, verbs)
        {
        }

        LanguageDetector detector;
        Verbs verbs;
        GrammarChecker grammar;
    };

    const English &english()
    {
        std::call_once(m_englishOnce, [this] { m_english = std::make_unique<English>(lexicon); });
        return *m_english;
    }

    Lexicon lexicon;

private:
    std::once_flag m_englishOnce;
    std::unique_ptr<English> m_english;
};

OfflineEngine::OfflineEngine(OfflinePaths paths)
    : d(std::make_unique<Private>(paths))
{
}

OfflineEngine::~OfflineEngine() = default;

void OfflineEngine::warmUp() const
{
    d->english();
    d->lexicon.load();
}

OfflineAnswer OfflineEngine::answer(const QString &command, const QString &text) const
{
    if (command == u"check-grammar" || command == u"quick-improve")
        return {true, d->english().grammar.corrected(text)};
    return needsModel(QStringLiteral("This command"));
}
