// SPDX-License-Identifier: MIT
#include "comparisondialog.h"

#include "copytable.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize usualSize(820, 440);

} // namespace

ComparisonDialog::ComparisonDialog(const QString &before, const QString &after, const Comparison &comparison,
                                   QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("comparisonDialog"));
    setWindowTitle(tr("What has changed"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_model.setChanges(comparison.changes);

    auto *sides = new QLabel(tr("Before: %1\nNow: %2").arg(before, after), this);
    sides->setTextFormat(Qt::PlainText);
    sides->setWordWrap(true);
    sides->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *sum
        = new QLabel(comparison.isSame() ? tr("Nothing has changed that goes beyond the usual variation.")
                                         : tr("%n change(s)", nullptr, comparison.changes.size()),
                     this);
    sum->setObjectName(QStringLiteral("comparisonSum"));
    QFont bold = sum->font();
    bold.setBold(true);
    sum->setFont(bold);
    auto *table = new CopyTable(this);
    table->setObjectName(QStringLiteral("comparisonTable"));
    table->setModel(&m_model);
    table->setWideColumn(ChangeModel::TextColumn);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, table, &CopyTable::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(sides);
    layout->addWidget(sum);
    layout->addWidget(table, 1);
    layout->addWidget(buttons);
    resize(parent != nullptr ? usualSize.boundedTo(parent->window()->size()) : usualSize);
}
