// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLayout>

#include <memory>
#include <vector>

/// A column of widgets, each as large as it wants to be within what there is, with the same gap
/// between any two. Room that is left goes to the one widget that expands vertically, else in equal
/// parts to the spacers. A column that does not fit sticks out at the bottom; nothing is ever
/// squeezed. Hidden widgets take no part. Main thread.
class VerticalStack : public QLayout
{
    Q_OBJECT

public:
    enum class Alignment { Leading, Center };

    /// `spacing` in points.
    VerticalStack(Alignment alignment, int spacing, QWidget *parent = nullptr);
    ~VerticalStack() override;

    /// Adds empty room of at least `minimum` points, which grows.
    void addSpacer(int minimum = 8);
    /// Adds empty room of exactly `height` points.
    void addFixedSpacer(int height);

    void addItem(QLayoutItem *item) override;
    int count() const override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;

    /// None of its own: the widget around it says whether it wants more than its content needs.
    Qt::Orientations expandingDirections() const override { return {}; }
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect &rect) override;

private:
    struct Row {
        QLayoutItem *item;
        QSize size;
        bool isSpacer;
        bool fills;
    };
    /// The rows in sight with the sizes that they want when `width` points are there for them.
    std::vector<Row> rowsWithin(int width) const;
    int heightOf(const std::vector<Row> &rows) const;

    Alignment m_alignment;
    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};
