// SPDX-License-Identifier: MIT
#pragma once

#include "changemodel.h"

#include <QDialog>

/*! Shows what has changed between two snapshots; stays open beside the window. */
class ComparisonDialog : public QDialog
{
    Q_OBJECT

public:
    /*! What is compared, in words: "Vehicle 1104001, 3 Sep 2026". */
    ComparisonDialog(const QString &before, const QString &after, const Comparison &comparison,
                     QWidget *parent = nullptr);

private:
    ChangeModel m_model;
};
