// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/Translator.h"

#include "backend/offline/text/ProtectedSpans.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <csignal>
#include <deque>
#include <unistd.h>

namespace offline
{

namespace
{

constexpr int maxStep = 20'000;       // milliseconds
constexpr int timeBetweenLooks = 100; // milliseconds

struct Language {
    QString name;
    QStringList codes; ///< as Apertium's modes write it
};

/// In the order in which they are tried as a language in between.
const std::array<Language, 6> &languages()
{
    static const std::array<Language, 6> list = {{
        {QStringLiteral("catalan"), {QStringLiteral("cat"), QStringLiteral("ca")}},
        {QStringLiteral("spanish"), {QStringLiteral("spa"), QStringLiteral("es")}},
        {QStringLiteral("english"), {QStringLiteral("eng"), QStringLiteral("en")}},
        {QStringLiteral("french"), {QStringLiteral("fra"), QStringLiteral("fr")}},
        {QStringLiteral("portuguese"), {QStringLiteral("por"), QStringLiteral("pt")}},
        {QStringLiteral("italian"), {QStringLiteral("ita"), QStringLiteral("it")}},
    }};
    return list;
}

int indexOf(const QString &language)
{
    for (size_t i = 0; i < languages().size(); ++i) {
        if (languages()[i].name == language)
            return int(i);
    }
    return -1;
}

/// The modes of Debian's packages, so that a missing one can be named.
const QHash<QString, QString> &packageOfMode()
{
    static const QHash<QString, QString> packages = [] {
        QHash<QString, QString> result;
        for (const QString &package :
             {QStringLiteral("eng-cat"), QStringLiteral("eng-spa"), QStringLiteral("spa-cat"),
              QStringLiteral("fra-cat"), QStringLiteral("por-cat"), QStringLiteral("cat-ita"),
              QStringLiteral("es-pt"), QStringLiteral("fr-es")}) {
            const QStringList codes = package.split(u'-');
            const QString name = QStringLiteral("apertium-") + package;
            result.insert(package, name);
            result.insert(codes.at(1) + u'-' + codes.at(0), name);
        }
        return result;
    }();
    return packages;
}

/// What a translation takes over as it is: links and code, numbers with their
/// units, times, initials, and names (capitals inside a sentence, and the same
/// words elsewhere). In order.
std::vector<Span> untranslated(const QString &text)
{
    static const QRegularExpression fixed(QStringLiteral(
        "\\b\\d[\\d.,:]*\\s?(?:km/h|mph|km|kg|mg|cm|mm|ml|GB|MB|TB|kB|GHz|MHz|Hz|kWh|kW|px|"
        "\u00b0[CF]|a\\.m\\.|p\\.m\\.|am|pm|m|g|l|h|W|V|%)(?!\\w)|\\b\\d[\\d.,:/-]*\\d(?!\\w)|"
        "\\b[A-Z][A-Z0-9]+\\b"));
    static const QRegularExpression name(
        QStringLiteral("(?<=[\\p{Ll},;] )(?!I\\b)\\p{Lu}[\\p{L}]+(?:[ -]\\p{Lu}\\p{L}+)*"));
    std::vector<Span> spans = protectedSpans(text);
    // "10:30" is protected already, of "10:30 am" it is a part.
    const auto add = [&spans](qsizetype start, qsizetype length) {
        const qsizetype end = start + length;
        const auto overlaps = [&](const Span &span) {
            return span.start < end && start < span.end();
        };
        const auto sticksOut = [&](const Span &span) {
            return overlaps(span) && (span.start < start || span.end() > end);
        };
        if (std::any_of(spans.begin(), spans.end(), sticksOut))
            return;
        spans.erase(std::remove_if(spans.begin(), spans.end(), overlaps), spans.end());
        spans.push_back({start, length});
    };
    QSet<QString> names;
    for (auto match = name.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        names.insert(found.captured());
        add(found.capturedStart(), found.capturedLength());
    }
    for (auto match = fixed.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        add(found.capturedStart(), found.capturedLength());
    }
    // "Rust is fast. We like Rust.": the first one too.
    for (const QString &known : names) {
        for (qsizetype at = text.indexOf(known); at >= 0; at = text.indexOf(known, at + 1)) {
            const bool whole = (at == 0 || !text.at(at - 1).isLetterOrNumber()) &&
                               (at + known.size() == text.size() ||
                                !text.at(at + known.size()).isLetterOrNumber());
            if (whole)
                add(at, known.size());
        }
    }
    std::sort(spans.begin(), spans.end(),
              [](const Span &a, const Span &b) { return a.start < b.start; });
    return spans;
}

/// A text whose links, addresses and code are replaced by made-up names, which
/// Apertium takes over as they are: of "example.com/a" it would translate the "a".
class Masked
{
public:
    explicit Masked(const QString &text)
    {
        while (text.contains(m_prefix))
            m_prefix += u'q';
        qsizetype done = 0;
        for (const Span &span : untranslated(text)) {
            m_text += QStringView(text).mid(done, span.start - done);
            m_text += name(m_parts.size());
            m_parts.append(text.mid(span.start, span.length));
            done = span.end();
        }
        m_text += QStringView(text).mid(done);
    }

    const QString &text() const { return m_text; }

    /// The translation with the parts back in their places; nothing when a name
    /// did not come back once.
    std::optional<QString> unmasked(QString translation) const
    {
        for (qsizetype i = m_parts.size() - 1; i >= 0; --i) {
            if (translation.count(name(i)) != 1)
                return std::nullopt;
            translation.replace(name(i), m_parts.at(i));
        }
        return translation;
    }

private:
    /// All of one length, so that none is the beginning of another.
    QString name(qsizetype index) const
    {
        QString letters;
        for (int place = 0; place < 4; ++place, index /= 26)
            letters += QChar(u'a' + char16_t(index % 26));
        return m_prefix + letters;
    }

    QString m_prefix = QStringLiteral("Xqz");
    QString m_text;
    QStringList m_parts;
};

QString displayName(const QString &language)
{
    return language.left(1).toUpper() + language.mid(1);
}

} // namespace

Translator::Translator(QString program, const QString &modes, const LanguageDetector &detector)
    : m_program(std::move(program))
    , m_detector(detector)
{
    const QStringList files = QDir(modes).entryList({QStringLiteral("*.mode")}, QDir::Files);
    for (const QString &file : files)
        m_modes.insert(file.chopped(5));
}

bool Translator::offers(const QString &language)
{
    return indexOf(language) >= 0;
}

/// The modes that lead from one language to another, fewest first; empty when
/// there is no way.
QStringList Translator::route(const QString &from, const QString &to, const QSet<QString> &modes)
{
    const auto mode = [&modes](const Language &a, const Language &b) {
        for (const QString &left : a.codes) {
            for (const QString &right : b.codes) {
                QString name = left + u'-' + right;
                if (modes.contains(name))
                    return name;
            }
        }
        return QString();
    };
    std::array<QStringList, 6> routes;
    std::deque<size_t> open = {size_t(indexOf(from))};
    const auto goal = size_t(indexOf(to));
    while (!open.empty() && routes[goal].isEmpty()) {
        const size_t here = open.front();
        open.pop_front();
        for (size_t next = 0; next < languages().size(); ++next) {
            const QString step = mode(languages()[here], languages()[next]);
            if (step.isEmpty() || !routes[next].isEmpty() || languages()[next].name == from)
                continue;
            routes[next] = routes[here] + QStringList(step);
            open.push_back(next);
        }
    }
    return routes[goal];
}

std::optional<QString> Translator::run(const QString &mode, const QString &text,
                                       const std::stop_token &stop) const
{
    QProcess process;
    process.setProgram(m_program);
    process.setArguments({QStringLiteral("-u"), mode});
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
    process.start();
    if (!process.waitForStarted(maxStep))
        return std::nullopt;
    process.write(text.toUtf8());
    process.closeWriteChannel();
    const QDeadlineTimer deadline(maxStep);
    while (!stop.stop_requested() && !deadline.hasExpired() &&
           !process.waitForFinished(timeBetweenLooks) && process.state() != QProcess::NotRunning) {
    }
    if (process.state() != QProcess::NotRunning) {
        // Apertium is a pipeline of programs.
        const auto group = pid_t(process.processId());
        ::kill(-group, SIGTERM); // lets it clean up
        if (!process.waitForFinished(1000))
            ::kill(-group, SIGKILL);
        process.waitForFinished(1000);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

Translator::Result Translator::translate(const QString &text, const QString &language,
                                         const std::stop_token &stop) const
{
    const QString from = m_detector.languageOf(text);
    if (from == language)
        return {true, text, {}};
    if (!offers(from)) {
        const QString found = from.isEmpty()
                                  ? QStringLiteral("The language of this text was not recognised")
                                  : displayName(from) + QStringLiteral(" cannot be translated");
        return {false,
                found + QStringLiteral(" without a language model: name one in "
                                       "~/.config/quillet/backend.ini under [model] with "
                                       "url=… and name=…, or start Ollama on this computer.")};
    }
    if (QStandardPaths::findExecutable(m_program).isEmpty())
        return {false, QStringLiteral("Translations need Apertium, which is not installed: install "
                                      "the package apertium.")};

    const QStringList steps = route(from, language, m_modes);
    if (steps.isEmpty()) {
        const QHash<QString, QString> &packages = packageOfMode();
        const QSet<QString> all(packages.keyBegin(), packages.keyEnd());
        QStringList missing;
        for (const QString &step : route(from, language, all)) {
            if (!m_modes.contains(step))
                missing.append(packages.value(step));
        }
        return {false,
                QStringLiteral("Apertium's data for %1 to %2 is not installed: install the package "
                               "%3.")
                    .arg(displayName(from), displayName(language),
                         missing.join(QStringLiteral(" and ")))};
    }
    const Masked masked(text);
    std::optional<QString> result = masked.text();
    for (const QString &step : steps) {
        if (result)
            result = run(step, *result, stop);
    }
    if (result)
        result = masked.unmasked(*result);
    if (!result)
        return {false, QStringLiteral("Apertium did not finish the translation.")};
    // Between Romance languages the sentences keep their build; English has
    // another one, and each step adds its mistakes.
    QString remark;
    if (steps.size() > 1)
        remark = QStringLiteral("A rough translation, by way of another language: read it before "
                                "you use it.");
    else if (from == u"english" || language == u"english")
        remark = QStringLiteral("A rough translation: read it before you use it.");
    return {true, *result, remark};
}

} // namespace offline
