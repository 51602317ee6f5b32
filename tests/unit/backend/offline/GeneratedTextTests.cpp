// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestData.h"

#include <random>

namespace
{

const QStringList &fixedParts()
{
    static const QStringList parts = {
        QStringLiteral("https://example.org/teh_page?a=1&b=recieve"),
        QStringLiteral("`teh = recieve(a, an apple)`"),
        QStringLiteral("/usr/lib/recieve.so"),
        QStringLiteral("jon.smtih@example.com"),
        QStringLiteral("@freind_of_mine"),
        QStringLiteral("#definately"),
        QStringLiteral("teh_value"),
        QStringLiteral("recieveAll"),
        QStringLiteral("--dont-wait"),
        QStringLiteral("v1.20.3"),
        QStringLiteral("3.14159"),
        QStringLiteral("1,250,000"),
        QStringLiteral("10:30"),
        QStringLiteral("Priyanka"),
        QStringLiteral("Kowalczyk"),
        QStringLiteral("x86_64"),
        QStringLiteral("<strong>"),
    };
    return parts;
}

/// A text of words right and wrong, with the parts that must stay; they are added
/// to `parts` in their order.
QString generated(std::mt19937 &random, QStringList &parts)
{
    static const QStringList words =
        QStringLiteral(
            "we i they the a an is are was have has go goes went teh recieve dont its your "
            "you're their there then than loose affect very good bad in order to due to the "
            "fact that thank you please help book books house several many one of use year "
            "old well known however because and but of with for can should not really "
            "think know make yesterday tomorrow friend team report alot peolpe")
            .split(u' ');
    static const QStringList gaps = {
        QStringLiteral(" "),     QStringLiteral(" "),    QStringLiteral(" "),
        QStringLiteral(", "),    QStringLiteral(". "),   QStringLiteral(".\n"),
        QStringLiteral(".\r\n"), QStringLiteral("\n\n"), QStringLiteral("!\n- ")};
    const auto pick = [&random](const QStringList &list) {
        return list.at(qsizetype(random() % unsigned(list.size())));
    };
    QString text = QStringLiteral("We know that this is ");
    const int length = 8 + int(random() % 20);
    for (int i = 0; i < length; ++i) {
        if (random() % 5 == 0) {
            parts.append(pick(fixedParts()));
            text += parts.last();
            text += QStringLiteral(" ");
        } else {
            text += pick(words);
            text += pick(gaps);
        }
    }
    return text + QStringLiteral("here.\n");
}

QString lineBreaks(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c == u'\n' || c == u'\r')
            result += c;
    }
    return result;
}

TEST(GeneratedTexts, KeepTheirNamesCodeLinksNumbersAndLines)
{
    std::mt19937 random(20240601);
    for (int round = 0; round < 1000; ++round) {
        QStringList parts;
        const QString text = generated(random, parts);
        for (const char *command :
             {"check-grammar", "quick-improve", "elevate", "expand", "clear", "concise", "emojify",
              "friendly", "happy", "confident", "professional"}) {
            const QString result = engine().answer(QString::fromUtf8(command), text).text;
            if (result.startsWith(u"\u24D8 "))
                continue;
            qsizetype at = 0;
            for (const QString &part : parts) {
                const qsizetype found = result.indexOf(part, at);
                ASSERT_GE(found, 0) << command << " lost " << part.toStdString() << " of\n"
                                    << text.toStdString() << "\nin\n"
                                    << result.toStdString();
                at = found + part.size();
            }
            ASSERT_EQ(lineBreaks(result), lineBreaks(text)) << command << '\n'
                                                            << text.toStdString() << "\n->\n"
                                                            << result.toStdString();
        }
    }
}

} // namespace
