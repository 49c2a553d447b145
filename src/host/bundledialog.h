// SPDX-License-Identifier: MIT
#pragma once

#include <host/pages/readabledialog.h>

class QCheckBox;

/*! Asks how a support bundle is to be: with the names in it, or masked. */
class BundleDialog : public ReadableDialog
{
    Q_OBJECT

public:
    explicit BundleDialog(QWidget *parent);

    bool isMasked() const;

private:
    QCheckBox *m_mask;
};
