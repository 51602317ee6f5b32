// Looks through the tree below the focused element and reads its text, in bulk and element by
// element through the same interface, in turn: bench_tree ROLE ELEMENTS REPETITIONS. Waits
// until an element of that role with so many below it has the focus: a page's tree comes late.
// Prints the times in nanoseconds, and whether both ways agree, as JSON.

#include "platform/Platform.h"
#include "quillet/focus/AccessibilityElement.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTimer>

#include <cstdio>

using platform::Accessibility;
using platform::AXUIElement;

namespace
{

constexpr int Patience = 60'000;

class Naive
{
public:
    explicit Naive(Accessibility &accessibility)
        : m_accessibility(accessibility)
    {
    }

    bool containsEditableText(const AXUIElement &element)
    {
        if (read<bool>(element, QStringLiteral("AXEditable")).value_or(false))
            return true;
        for (const AXUIElement &child : children(element)) {
            const auto role = read<QString>(child, QStringLiteral("AXRole"));
            if (role == QLatin1StringView("AXTextArea") ||
                role == QLatin1StringView("AXEditableText") || containsEditableText(child))
                return true;
        }
        return false;
    }

    QString text(const AXUIElement &element)
    {
        ++m_elements;
        for (const QString &attribute :
             {QStringLiteral("AXValue"), QStringLiteral("AXSelectedText")}) {
            const auto value = read<QString>(element, attribute);
            if (value && !value->isEmpty())
                return *value;
        }
        QStringList texts;
        for (const AXUIElement &child : children(element))
            texts.append(text(child));
        return texts.join(u'\n');
    }

    int elements() const { return m_elements; }

private:
    QList<AXUIElement> children(const AXUIElement &element)
    {
        return read<QList<AXUIElement>>(element, QStringLiteral("AXChildren"))
            .value_or(QList<AXUIElement>());
    }
    template <typename T>
    std::optional<T> read(const AXUIElement &element, const QString &attribute)
    {
        return getAttribute<T>(m_accessibility, element, attribute);
    }

    Accessibility &m_accessibility;
    int m_elements = 0;
};

void handleEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 2);
}

AXUIElement focusedElement(Accessibility &accessibility, const QString &role, int elements)
{
    QElapsedTimer waiting;
    for (waiting.start(); waiting.elapsed() < Patience;) {
        const auto element =
            getAttribute<AXUIElement>(accessibility, accessibility.AXUIElementCreateSystemWide(),
                                      QStringLiteral("AXFocusedUIElement"));
        if (element &&
            getAttribute<QString>(accessibility, *element, QStringLiteral("AXRole")) == role) {
            Naive naive(accessibility);
            naive.text(*element);
            if (naive.elements() >= elements)
                return *element;
        }
        handleEvents();
    }
    return {};
}

bool decideInBulk(Accessibility &accessibility, Naive &naive, const AXUIElement &element)
{
    QElapsedTimer waiting;
    for (waiting.start(); waiting.elapsed() < Patience;) {
        switch (accessibility.containsEditableText(element)) {
        case Accessibility::Answer::Yes:
            return true;
        case Accessibility::Answer::No:
            return false;
        case Accessibility::Answer::Pending:
            handleEvents();
            break;
        case Accessibility::Answer::Unsupported:
            return naive.containsEditableText(element);
        }
    }
    return false;
}

QString readInBulk(Accessibility &accessibility, Naive &naive, const AXUIElement &element)
{
    std::optional<QString> found;
    if (!accessibility.copyTreeText(element, [&found](const QString &text) { found = text; }))
        return naive.text(element);
    QElapsedTimer waiting;
    for (waiting.start(); !found && waiting.elapsed() < Patience;)
        handleEvents();
    return found.value_or(QString());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QString role = QString::fromUtf8(argc > 1 ? argv[1] : "AXWebArea");
    const int elements = QByteArray(argc > 2 ? argv[2] : "1").toInt();
    const int repetitions = QByteArray(argc > 3 ? argv[3] : "5").toInt();
    const auto system = platform::createPlatform();
    Accessibility &accessibility = system->accessibility();

    // Keeps the event loop turning while it waits for answers.
    QTimer pulse;
    pulse.start(2);
    const AXUIElement element = focusedElement(accessibility, role, elements);
    if (!element) {
        std::fprintf(stderr, "no %s of that size has the focus\n", qPrintable(role));
        return 1;
    }
    QMap<QString, QJsonArray> times;
    bool sameAnswer = true;
    bool sameText = true;
    bool answer = false;
    QString text;
    int visited = 0;
    const auto time = [&times](const QString &what, auto &&work) {
        QElapsedTimer timer;
        timer.start();
        auto result = work();
        times[what].append(timer.nsecsElapsed());
        return result;
    };
    for (int i = 0; i < repetitions; ++i) {
        Naive naive(accessibility);
        Naive fallback(accessibility);
        answer = time(QStringLiteral("decide"),
                      [&] { return decideInBulk(accessibility, fallback, element); });
        sameAnswer &= answer == time(QStringLiteral("decideNaive"),
                                     [&] { return naive.containsEditableText(element); });
        text = time(QStringLiteral("read"),
                    [&] { return readInBulk(accessibility, fallback, element); });
        sameText &= text == time(QStringLiteral("readNaive"), [&] { return naive.text(element); });
        visited = naive.elements();
    }
    QJsonObject report{{QStringLiteral("answer"), answer},
                       {QStringLiteral("sameAnswer"), sameAnswer},
                       {QStringLiteral("sameText"), sameText},
                       {QStringLiteral("characters"), text.size()},
                       {QStringLiteral("elements"), visited}};
    for (auto it = times.cbegin(); it != times.cend(); ++it)
        report.insert(it.key(), it.value());
    std::printf("%s\n", QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
    return 0;
}
