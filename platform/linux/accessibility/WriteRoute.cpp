// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/WriteRoute.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace platform::linux_
{

namespace
{

/// Typing what lies between two stretches takes less time than selecting once more.
constexpr qsizetype maxTypedGap = 24;
/// What is typed in one go is undone in one step, and this much is quickly typed.
constexpr qsizetype maxTypedAtOnce = 240;
constexpr qsizetype maxSteps = 2;

/// The edit with a neighbour of its place, where it only inserts: a selection can be checked, a
/// caret between two characters is in doubt where an emoji stands before it.
TextEdit withSelection(TextEdit edit, const QString &before)
{
    if (edit.length > 0 || before.isEmpty())
        return edit;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, before);
    characters.setPosition(edit.position);
    if (edit.position > 0) {
        const qsizetype from = characters.toPreviousBoundary();
        edit.length = edit.position - from;
        edit.replacement.prepend(QStringView(before).sliced(from, edit.length));
        edit.position = from;
    } else {
        edit.length = characters.toNextBoundary();
        edit.replacement.append(QStringView(before).first(edit.length));
    }
    return edit;
}

/// The edits with those made one that take whole lines away or bring some in, and all between
/// these: only then do the lines of both texts correspond.
QList<TextEdit> withLinesTogether(const QList<TextEdit> &edits, const QString &from)
{
    const auto changesLines = [&](const TextEdit &edit) {
        return edit.replacement.contains(u'\n') ||
               QStringView(from).sliced(edit.position, edit.length).contains(u'\n');
    };
    const auto first = std::find_if(edits.begin(), edits.end(), changesLines);
    if (first == edits.end())
        return edits;
    auto last = std::find_if(edits.rbegin(), edits.rend(), changesLines).base();
    QList<TextEdit> between(first, last);
    // Where lines go, what follows in the last one moves up.
    qsizetype lineEnd = from.indexOf(u'\n', between.last().end());
    if (lineEnd < 0)
        lineEnd = from.size();
    for (; last != edits.end() && last->position <= lineEnd; ++last)
        between.append(*last);
    between.append({lineEnd, 0, {}});
    return QList<TextEdit>(edits.begin(), first) + joinedEdits(between, from, from.size()) +
           QList<TextEdit>(last, edits.end());
}

/// The edits with neighbours made one where they lie close enough and in the same element.
QList<TextEdit> joined(const QList<TextEdit> &edits, const QString &from, qsizetype maxGap,
                       const TextInput &input)
{
    QList<TextEdit> result;
    for (const TextEdit &edit : edits) {
        if (!result.isEmpty()) {
            const QList<TextEdit> pair = joinedEdits({result.last(), edit}, from, maxGap);
            if (pair.size() == 1 && input.canAddress(pair.first().position, pair.first().length)) {
                result.last() = pair.first();
                continue;
            }
        }
        result.append(edit);
    }
    return result;
}

/// Only what differs, where the program replaces it.
QList<TextEdit> programEdits(const QList<TextEdit> &edits, const TextInput::Content &content,
                             const TextInput &input)
{
    if (content.hasParagraphs)
        return withLinesTogether(edits, content.text);
    // Where no format can be lost, one step is enough.
    return content.isUniform ? joined(edits, content.text, content.text.size(), input) : edits;
}

/// Only what differs, typed over a selection.
QList<TextEdit> typedStretches(QList<TextEdit> edits, const QString &from, const TextInput &input)
{
    const qsizetype span = edits.last().end() - edits.first().position;
    edits = joined(edits, from, maxTypedGap, input);
    if (edits.size() > maxSteps && span <= maxTypedAtOnce)
        edits = joined(edits, from, maxTypedAtOnce, input);
    for (TextEdit &edit : edits)
        edit = withSelection(edit, from);
    return edits;
}

} // namespace

QList<TextEdit> editsFor(WriteRoute route, const TextInput::Content &content, const QString &goal,
                         const TextInput &input)
{
    const QString &from = content.text;
    const QList<TextEdit> everything{{0, from.size(), goal}};
    if (route == WriteRoute::All)
        return everything;
    if (route == WriteRoute::Contents)
        return input.takesEdits() ? everything : QList<TextEdit>();
    QList<TextEdit> edits = textDifference(from, goal);
    if (edits.isEmpty())
        return edits;
    edits = route == WriteRoute::Edits ? programEdits(edits, content, input)
                                       : typedStretches(edits, from, input);
    const bool areInReach = std::all_of(edits.begin(), edits.end(), [&](const TextEdit &edit) {
        return input.canAddress(edit.position, edit.length);
    });
    return areInReach ? edits : QList<TextEdit>();
}

} // namespace platform::linux_
