// SPDX-License-Identifier: MIT
#pragma once

#include "bundlemanifest.h"
#include "supportbundle.h"
#include "zipfile.h"

#include <QCoreApplication>

#include <optional>

/*! The opening half of BundleFile: a bundle out of its files. */
class BundleReading
{
    Q_DECLARE_TR_FUNCTIONS(BundleReading)

public:
    /*! What can be used; SupportBundle::problems says what cannot. Empty when the files are no bundle, with the rest of a
     *  sentence.
     */
    static std::optional<SupportBundle> read(const QVector<ZipFile::Entry> &files, QString *problem);

private:
    BundleReading(const BundleManifest &manifest, const QVector<ZipFile::Entry> &files);

    std::optional<QByteArray> take(const char *name);
    void readSnapshot();
    void readTrace();
    void readEvents();
    void readMessages();
    void complain(const char *name, const QString &reason);

    const BundleManifest &m_manifest;
    const QVector<ZipFile::Entry> &m_files;
    SupportBundle m_bundle;
};
