// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/widgets/TextView.h"
#include "quillet/window/StatusBadge.h"

class VerticalStack;

/// A status card: title, badge, text, and room below for one control. The panel is as wide as its
/// content and stands in the middle of the view, which is 350 points wide. Main thread.
class CardView : public QWidget
{
    Q_OBJECT

public:
    CardView(const QString &title, const QString &text, QWidget *parent = nullptr);

    void addControl(QWidget *control);
    StatusBadge &badge() { return *m_badge; }
    TextView &text() { return *m_text; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    VerticalStack *m_stack;
    StatusBadge *m_badge;
    TextView *m_text;
};
