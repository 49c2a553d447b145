// SPDX-License-Identifier: MIT
#pragma once

#include "supportbundle.h"
#include "zipfile.h"

#include <QCoreApplication>
#include <QString>

class RuleSet;

/*! The making half of BundleFile: a bundle as files. */
class BundleWriting
{
    Q_DECLARE_TR_FUNCTIONS(BundleWriting)

public:
    /*! Judges the snapshot by \a rules; texts are of \a language. */
    static QVector<ZipFile::Entry> toFiles(const SupportBundle &bundle, const RuleSet &rules,
                                           const QString &language);

private:
    static QString readMe(const SupportBundle &bundle);
};
