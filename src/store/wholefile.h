// SPDX-License-Identifier: MIT
#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

class QFileDevice;

/*! A file that appears whole under its name or not at all; until then the old one stays.
 *
 *  Where the system can do it, the new file has no name before it is complete, so that nothing is left of it even when
 *  the process is killed. What stands there and is no file, a pipe or a device, is written to and never replaced.
 *
 *  open(), write(), commit(). When one of them fails, so do those after it, and errorString() has the system's reason.
 */
class WholeFile
{
public:
    explicit WholeFile(const QString &fileName);
    ~WholeFile(); //!< without a commit() nothing is left
    Q_DISABLE_COPY(WholeFile)

    /*! Opens for writing; \a flags may be QIODevice::Text. */
    bool open(QIODevice::OpenMode flags = QIODevice::NotOpen);

    bool write(const QByteArray &bytes);

    /*! Puts the new file in the place of the old one. */
    bool commit();

    QString errorString() const;

private:
    /*! How the file comes to its name. */
    enum class Way : quint8 {
        Directly, //!< it has one: a pipe or device
        Named,    //!< when it is complete
        Renamed,  //!< from another one beside it
    };

    bool openUnnamed(QIODevice::OpenMode mode);
    bool giveName();

    QString m_fileName;
    std::unique_ptr<QFileDevice> m_file;
    Way m_way = Way::Renamed;
    QString m_error;
};
