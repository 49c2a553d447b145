// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

/*! A dialog of texts and fields: as wide as they are read well, and narrower where the screen is. */
class ReadableDialog : public QDialog
{
    Q_OBJECT

public:
    QSize sizeHint() const override;

protected:
    /*! \a usualWidth is in letters. */
    ReadableDialog(int usualWidth, QWidget *parent);

private:
    int m_usualWidth;
};
