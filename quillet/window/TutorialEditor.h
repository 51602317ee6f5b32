// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPlainTextEdit>

/// The editor in which the user tries Quillet: an ordinary multi-line input, so that the button
/// comes to it as it comes to any other program's. Tab leaves it. Main thread.
class TutorialEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit TutorialEditor(QWidget *parent = nullptr);

    QSize sizeHint() const override { return QSize(0, 100); }
    QSize minimumSizeHint() const override { return QSize(0, 0); }

protected:
    bool event(QEvent *event) override;

private:
    void paintBorder();
};
