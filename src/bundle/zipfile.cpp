// SPDX-License-Identifier: MIT
#include "zipfile.h"

#include <zip.h>

#include <algorithm>
#include <memory>

namespace {

constexpr char magic[] = "PK\x03\x04";
constexpr int longestName = 255;

struct ErrorText // of libzip, in its own words
{
    ErrorText() { zip_error_init(&error); }
    ~ErrorText() { zip_error_fini(&error); }
    Q_DISABLE_COPY(ErrorText)

    zip_error_t error{};
    QString text() { return QString::fromUtf8(zip_error_strerror(&error)); }
};

struct Discard
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
struct CloseFile
{
    void operator()(zip_file_t *file) const { zip_fclose(file); }
};
struct FreeSource
{
    void operator()(zip_source_t *source) const { zip_source_free(source); }
};
using Archive = std::unique_ptr<zip_t, Discard>;
using File = std::unique_ptr<zip_file_t, CloseFile>;
using Source = std::unique_ptr<zip_source_t, FreeSource>;

bool add(zip_t *archive, const ZipFile::Entry &entry)
{
    // The bytes stay the caller's, who keeps them until the archive is written.
    Source source(zip_source_buffer(archive, entry.bytes.constData(), zip_uint64_t(entry.bytes.size()), 0));
    if (!source)
        return false;
    const zip_int64_t place
        = zip_file_add(archive, entry.name.toUtf8().constData(), source.get(), ZIP_FL_ENC_UTF_8);
    if (place < 0)
        return false;
    (void)source.release(); // the archive's
    const int method = entry.isPacked ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    return zip_set_file_compression(archive, zip_uint64_t(place), method, 0) == 0;
}

QByteArray readAll(zip_source_t *source)
{
    zip_stat_t facts;
    if (zip_source_stat(source, &facts) != 0 || (facts.valid & ZIP_STAT_SIZE) == 0
        || zip_source_open(source) != 0)
        return QByteArray();
    QByteArray bytes(static_cast<int>(facts.size), Qt::Uninitialized);
    const zip_int64_t count = zip_source_read(source, bytes.data(), facts.size);
    zip_source_close(source);
    return count == bytes.size() ? bytes : QByteArray();
}

/*! As many bytes as the file says that there are, and not one more. */
std::optional<QByteArray> readEntry(zip_t *archive, zip_uint64_t place, qint64 size)
{
    const File file(zip_fopen_index(archive, place, 0));
    if (!file)
        return std::nullopt;
    QByteArray bytes(static_cast<int>(size) + 1, Qt::Uninitialized);
    qint64 done = 0;
    while (done < bytes.size()) {
        const zip_int64_t count
            = zip_fread(file.get(), bytes.data() + done, zip_uint64_t(bytes.size() - done));
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        done += count;
    }
    if (done != size)
        return std::nullopt;
    bytes.truncate(static_cast<int>(size));
    return bytes;
}

} // namespace

bool ZipFile::isZip(const QByteArray &beginning)
{
    return beginning.startsWith(QByteArray(magic, sizeof magic - 1));
}

QByteArray ZipFile::pack(const QVector<Entry> &entries, QString *errorMessage)
{
    ErrorText error;
    const Source to(zip_source_buffer_create(nullptr, 0, 0, &error.error));
    if (!to) {
        *errorMessage = error.text();
        return QByteArray();
    }
    zip_source_keep(to.get()); // once for the archive, once for what comes after it
    Archive archive(zip_open_from_source(to.get(), ZIP_CREATE | ZIP_TRUNCATE, &error.error));
    if (!archive) {
        zip_source_free(to.get());
        *errorMessage = error.text();
        return QByteArray();
    }
    const bool isAdded = std::all_of(entries.begin(), entries.end(),
                                     [&archive](const Entry &entry) { return add(archive.get(), entry); });
    if (!isAdded || zip_close(archive.get()) != 0) {
        *errorMessage = QString::fromUtf8(zip_strerror(archive.get()));
        return QByteArray();
    }
    (void)archive.release(); // gone with the closing
    return readAll(to.get());
}

QString ZipFile::nameProblem(const QString &name)
{
    const bool isOutside = name.isEmpty() || name.size() > longestName || name.contains(QLatin1Char('/'))
                           || name.contains(QLatin1Char('\\')) || name.contains(QLatin1Char('\0'))
                           || name.startsWith(QLatin1Char('.'));
    return isOutside ? tr("it holds a file in a folder, or of a name that none may have") : QString();
}

std::optional<QVector<ZipFile::Entry>> ZipFile::unpack(const QByteArray &bytes, const Limits &limits,
                                                       QString *problem)
{
    const auto refuse = [problem](const QString &reason) {
        *problem = reason;
        return std::nullopt;
    };
    if (!isZip(bytes))
        return refuse(tr("it is no zip file"));
    ErrorText error;
    Source source(zip_source_buffer_create(bytes.constData(), zip_uint64_t(bytes.size()), 0, &error.error));
    const Archive archive(
        source ? zip_open_from_source(source.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error.error) : nullptr);
    if (!archive && zip_error_code_zip(&error.error) == ZIP_ER_EXISTS)
        return refuse(tr("it holds two files of the same name"));
    if (!archive)
        return refuse(tr("it is damaged (%1)").arg(error.text()));
    (void)source.release(); // the archive's
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    if (count > limits.entries)
        return refuse(tr("it holds too many files"));
    QVector<Entry> entries;
    qint64 total = 0;
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t facts;
        if (zip_stat_index(archive.get(), zip_uint64_t(i), 0, &facts) != 0)
            return refuse(tr("it is damaged"));
        Entry entry;
        entry.name = QString::fromUtf8(facts.name);
        const QString named = nameProblem(entry.name);
        if (!named.isEmpty())
            return refuse(named);
        if (facts.encryption_method != ZIP_EM_NONE)
            return refuse(tr("it is encrypted"));
        if (facts.size > zip_uint64_t(limits.file) || total + qint64(facts.size) > limits.total)
            return refuse(tr("the file %1 in it is far too large").arg(entry.name));
        total += qint64(facts.size);
        const std::optional<QByteArray> content
            = readEntry(archive.get(), zip_uint64_t(i), qint64(facts.size));
        if (!content)
            return refuse(tr("the file %1 in it is damaged").arg(entry.name));
        entry.bytes = *content;
        entries.append(entry);
    }
    return entries;
}
