// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/text/WordChanges.h"

#include <QTextEdit>

/// The former text and the new one as one: what goes is struck through, what comes is tinted and
/// underlined. A click on a change asks to take it back. Not editable. Main thread.
class ChangesView : public QTextEdit
{
    Q_OBJECT

public:
    explicit ChangesView(QWidget *parent = nullptr);

    /// `changes` are those from `before` to `after`.
    void showTexts(const QString &before, const QString &after,
                   const QList<platform::WordChange> &changes);

Q_SIGNALS:
    void takeBackWanted(const platform::WordChange &change);

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    const platform::WordChange *changeAt(const QPoint &point) const;

    struct Span {
        int from;
        int to;
        platform::WordChange change;
    };
    QList<Span> m_spans;
};
