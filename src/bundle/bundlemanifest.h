// SPDX-License-Identifier: MIT
#pragma once

#include "zipfile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

/*! What a bundle says of itself: manifest.json, its first file. */
struct BundleManifest
{
    Q_DECLARE_TR_FUNCTIONS(BundleManifest)

public:
    static constexpr int version = 1; //!< that is written, and the highest one that is read
    static constexpr char fileName[] = "manifest.json";

    struct File
    {
        QString name;
        QString sha256; //!< 64 hexadecimal digits
    };

    QString program;
    QDateTime time;
    bool isMasked = false;
    QVector<File> files;

    /*! Of all other files. */
    static BundleManifest of(const QVector<ZipFile::Entry> &entries);
    static QString fingerprint(const QByteArray &bytes);

    QByteArray toJson() const;
    /*! Empty with the rest of a sentence: what is wrong. */
    static std::optional<BundleManifest> fromJson(const QByteArray &text, QString *problem);
};
