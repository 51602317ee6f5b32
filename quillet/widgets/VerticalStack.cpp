// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/VerticalStack.h"

#include <QSpacerItem>
#include <QWidget>

#include <algorithm>

namespace
{

/// The size that `item` wants when at most `width` points are there for it.
QSize sizeWithin(QLayoutItem &item, int width)
{
    QSize size = item.sizeHint();
    if (item.expandingDirections() & Qt::Horizontal)
        size.setWidth(width);
    size.setWidth(std::min({size.width(), width, item.maximumSize().width()}));
    if (item.hasHeightForWidth())
        size.setHeight(item.heightForWidth(size.width()));
    return size;
}

} // namespace

VerticalStack::VerticalStack(Alignment alignment, int spacing, QWidget *parent)
    : QLayout(parent)
    , m_alignment(alignment)
{
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
    setSizeConstraint(QLayout::SetNoConstraint);
}

VerticalStack::~VerticalStack() = default;

void VerticalStack::addSpacer(int minimum)
{
    addItem(new QSpacerItem(0, minimum, QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void VerticalStack::addFixedSpacer(int height)
{
    addItem(new QSpacerItem(0, height, QSizePolicy::Minimum, QSizePolicy::Fixed));
}

void VerticalStack::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
    invalidate();
}

int VerticalStack::count() const
{
    return int(m_items.size());
}

QLayoutItem *VerticalStack::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[size_t(index)].get() : nullptr;
}

QLayoutItem *VerticalStack::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem *item = m_items[size_t(index)].release();
    m_items.erase(m_items.begin() + index);
    invalidate();
    return item;
}

std::vector<VerticalStack::Row> VerticalStack::rowsWithin(int width) const
{
    std::vector<Row> rows;
    for (const auto &item : m_items) {
        const bool isSpacer = item->spacerItem() != nullptr;
        if (!isSpacer && item->isEmpty())
            continue;
        const bool grows = item->expandingDirections() & Qt::Vertical;
        rows.push_back(
            {item.get(), sizeWithin(*item, width), isSpacer && grows, !isSpacer && grows});
    }
    return rows;
}

int VerticalStack::heightOf(const std::vector<Row> &rows) const
{
    int height = rows.empty() ? 0 : spacing() * int(rows.size() - 1);
    for (const Row &row : rows)
        height += row.size.height();
    return height;
}

QSize VerticalStack::sizeHint() const
{
    const std::vector<Row> rows = rowsWithin(QLAYOUTSIZE_MAX);
    int width = 0;
    for (const Row &row : rows)
        if (!(row.item->expandingDirections() & Qt::Horizontal))
            width = std::max(width, row.size.width());
    return QSize(width, heightOf(rows)).grownBy(contentsMargins());
}

QSize VerticalStack::minimumSize() const
{
    return QSize(0, 0);
}

int VerticalStack::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    return heightOf(rowsWithin(width - margins.left() - margins.right())) + margins.top() +
           margins.bottom();
}

void VerticalStack::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    const QRect inner = rect.marginsRemoved(contentsMargins());
    std::vector<Row> rows = rowsWithin(inner.width());

    int left = std::max(0, inner.height() - heightOf(rows));
    const auto fill = std::find_if(rows.begin(), rows.end(), [](const Row &r) { return r.fills; });
    if (fill != rows.end()) {
        fill->size.rheight() += left;
    } else {
        int spacers =
            int(std::count_if(rows.begin(), rows.end(), [](const Row &r) { return r.isSpacer; }));
        for (Row &row : rows) {
            if (!row.isSpacer)
                continue;
            const int share = left / spacers--;
            row.size.rheight() += share;
            left -= share;
        }
    }

    int y = inner.top();
    for (const Row &row : rows) {
        int x = inner.left();
        if (m_alignment == Alignment::Center)
            x += (inner.width() - row.size.width()) / 2;
        row.item->setGeometry(QRect(QPoint(x, y), row.size));
        y += row.size.height() + spacing();
    }
}
