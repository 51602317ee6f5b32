// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

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

constexpr int patience = 60'000;

void handleEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 2);
}

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

    /// How many elements there are, `element` included.
    int count(const AXUIElement &element)
    {
        int elements = 1;
        for (const AXUIElement &child : children(element))
            elements += count(child);
        return elements;
    }

    QString text(const AXUIElement &element)
    {
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

private:
    /// Asks again where the list takes longer than the limit for one answer.
    QList<AXUIElement> children(const AXUIElement &element)
    {
        QElapsedTimer waiting;
        waiting.start();
        for (;;) {
            const auto found = read<QList<AXUIElement>>(element, QStringLiteral("AXChildren"));
            if (found || waiting.elapsed() > patience)
                return found.value_or(QList<AXUIElement>());
            handleEvents();
        }
    }
    template <typename T>
    std::optional<T> read(const AXUIElement &element, const QString &attribute)
    {
        return getAttribute<T>(m_accessibility, element, attribute);
    }

    Accessibility &m_accessibility;
};

/// Waits for an element of the role with at least `wanted` elements, itself included; `elements` is
/// set to how many there are.
AXUIElement focusedElement(Accessibility &accessibility, const QString &role, int wanted,
                           int &elements)
{
    QElapsedTimer waiting;
    for (waiting.start(); waiting.elapsed() < patience;) {
        const auto element =
            getAttribute<AXUIElement>(accessibility, accessibility.AXUIElementCreateSystemWide(),
                                      QStringLiteral("AXFocusedUIElement"));
        if (element &&
            getAttribute<QString>(accessibility, *element, QStringLiteral("AXRole")) == role) {
            if (elements < wanted)
                elements = Naive(accessibility).count(*element);
            if (elements >= wanted)
                return *element;
        }
        handleEvents();
    }
    return {};
}

bool decideInBulk(Accessibility &accessibility, Naive &naive, const AXUIElement &element)
{
    QElapsedTimer waiting;
    for (waiting.start(); waiting.elapsed() < patience;) {
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
    for (waiting.start(); !found && waiting.elapsed() < patience;)
        handleEvents();
    return found.value_or(QString());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QString role = QString::fromUtf8(argc > 1 ? argv[1] : "AXWebArea");
    const int wanted = QByteArray(argc > 2 ? argv[2] : "1").toInt();
    const int repetitions = QByteArray(argc > 3 ? argv[3] : "5").toInt();

    // Keeps the event loop turning while it waits for answers.
    QTimer pulse;
    pulse.start(2);
    QMap<QString, QJsonArray> times;
    bool sameAnswer = true;
    bool sameText = true;
    bool answer = false;
    QString text;
    int elements = 0;
    const auto time = [&times](const QString &what, auto &&work) {
        QElapsedTimer timer;
        timer.start();
        auto result = work();
        times[what].append(timer.nsecsElapsed());
        return result;
    };
    for (int i = 0; i < repetitions; ++i) {
        // A new one each time: it remembers what it has decided.
        const auto system = platform::createPlatform();
        Accessibility &accessibility = system->accessibility();
        const AXUIElement element = focusedElement(accessibility, role, wanted, elements);
        if (!element) {
            std::fprintf(stderr, "no %s of that size has the focus, the last had %d elements\n",
                         qPrintable(role), elements);
            return 1;
        }
        Naive naive(accessibility);
        answer = time(QStringLiteral("decide"),
                      [&] { return decideInBulk(accessibility, naive, element); });
        sameAnswer &= answer == time(QStringLiteral("decideNaive"),
                                     [&] { return naive.containsEditableText(element); });
        text =
            time(QStringLiteral("read"), [&] { return readInBulk(accessibility, naive, element); });
        sameText &= text == time(QStringLiteral("readNaive"), [&] { return naive.text(element); });
    }
    QJsonObject report{{QStringLiteral("answer"), answer},
                       {QStringLiteral("sameAnswer"), sameAnswer},
                       {QStringLiteral("sameText"), sameText},
                       {QStringLiteral("characters"), text.size()},
                       {QStringLiteral("elements"), elements}};
    for (auto it = times.cbegin(); it != times.cend(); ++it)
        report.insert(it.key(), it.value());
    std::printf("%s\n", QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
    return 0;
}
