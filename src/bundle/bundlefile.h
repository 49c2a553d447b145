// SPDX-License-Identifier: MIT
#pragma once

#include "supportbundle.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

class RuleSet;

/*! A support bundle as a file: one zip, described in docs/bundle.md. */
class BundleFile
{
    Q_DECLARE_TR_FUNCTIONS(BundleFile)

public:
    /*! Whether a file begins like a bundle; false for what is no file. */
    static bool isBundle(const QString &fileName);

    /*! Whether the name is that of a bundle: .zip */
    static bool isBundleName(const QString &fileName);

    /*! Judges the snapshot by \a rules, and writes the whole file or none; false with a sentence. Masks nothing, see
     *  BundleMasking.
     */
    static bool save(const QString &fileName, const SupportBundle &bundle, const RuleSet &rules,
                     const QString &language, QString *errorMessage);

    /*! What can be used of it; its problems say what cannot. Empty when it cannot be opened, with a sentence. */
    static std::optional<SupportBundle> load(const QString &fileName, QString *errorMessage);

    /*! Only the trace, as its bytes in the file; empty with a sentence, also when it is not the one that was put in. */
    static std::optional<QByteArray> loadTrace(const QString &fileName, QString *errorMessage);

    /*! The same of the bytes of a file. */
    static std::optional<SupportBundle> fromBytes(const QByteArray &bytes, QString *problem);

private:
    static std::optional<QByteArray> readFile(const QString &fileName, QString *errorMessage);
    static QString sentence(const QString &fileName, const QString &problem);
};
