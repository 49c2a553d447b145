// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/*! A folder like /sys/class/net, for tests that unplug and plug. */
class FakeNetworkFolder
{
public:
    QString path() const { return m_folder.path(); }

    void add(const QString &name, int index, const char *flags = "0x40081")
    {
        QDir(path()).mkpath(name);
        write(name, QStringLiteral("ifindex"), QByteArray::number(index) + '\n');
        setFlags(name, flags);
    }

    void setFlags(const QString &name, const char *flags)
    {
        write(name, QStringLiteral("flags"), QByteArray(flags) + '\n');
    }

    void remove(const QString &name) { QDir(path() + QLatin1Char('/') + name).removeRecursively(); }

private:
    void write(const QString &name, const QString &attribute, const QByteArray &text)
    {
        QFile file(path() + QLatin1Char('/') + name + QLatin1Char('/') + attribute);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write %s", qUtf8Printable(file.fileName()));
    }

    QTemporaryDir m_folder;
};
