// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QColor>
#include <QLabel>

/// A short status behind a check mark in a tinted box, all in one colour. Main thread.
class StatusBadge : public QLabel
{
    Q_OBJECT

public:
    explicit StatusBadge(QWidget *parent = nullptr);

    void setStatus(const QString &status, const QColor &color);
    QColor color() const { return m_color; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return QSize(0, 0); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};
