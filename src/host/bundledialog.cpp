// SPDX-License-Identifier: MIT
#include "bundledialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int usualBundleWidth = 60; // letters

} // namespace

BundleDialog::BundleDialog(QWidget *parent)
    : ReadableDialog(usualBundleWidth, parent)
    , m_mask(new QCheckBox(tr("&Mask serial numbers, names, notes and paths"), this))
{
    setObjectName(QStringLiteral("bundleDialog"));
    setWindowTitle(tr("Save support bundle"));
    m_mask->setObjectName(QStringLiteral("bundleMask"));
    m_mask->setToolTip(
        tr("The same one everywhere by the same stand-in, within the frames too. Nobody can tell "
           "what it stood for."));
    auto *text
        = new QLabel(tr("One file for who is to help: the check-up that is shown with all its values, the "
                        "frames of the last minutes, events, messages, and what this computer is."),
                     this);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Save)->setText(tr("&Save..."));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_mask);
    layout->addWidget(buttons);
}

bool BundleDialog::isMasked() const
{
    return m_mask->isChecked();
}
