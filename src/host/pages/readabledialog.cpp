// SPDX-License-Identifier: MIT
#include "readabledialog.h"

ReadableDialog::ReadableDialog(int usualWidth, QWidget *parent)
    : QDialog(parent)
    , m_usualWidth(usualWidth)
{
}

QSize ReadableDialog::sizeHint() const
{
    return QDialog::sizeHint().expandedTo({fontMetrics().averageCharWidth() * m_usualWidth, 0});
}
