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

    /*! A file of a bundle. Without bytes there is none, or, with a sentence, none that can be used. */
    struct TakenFile
    {
        std::optional<QByteArray> bytes;
        QString problem;
    };

    /*! Only the trace; empty as read(). */
    static std::optional<TakenFile> takeTrace(const QVector<ZipFile::Entry> &files, QString *problem);

private:
    BundleReading(const BundleManifest &manifest, const QVector<ZipFile::Entry> &files);

    static std::optional<BundleManifest> manifestOf(const QVector<ZipFile::Entry> &files, QString *problem);
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
