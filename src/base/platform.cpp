#include "base/platform.h"

#include <QFile>

#include <QDir>
#include <QtGlobal>

#ifdef Q_OS_WIN
#include <QCryptographicHash>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace base {

QString isletimSistemiKullanicisi()
{
#ifdef Q_OS_WIN
    QString name
        = qEnvironmentVariable("USERDOMAIN") + QLatin1Char('-') + qEnvironmentVariable("USERNAME");
    if (name.size() > 1)
        return name;
    // No name in the environment: the profile folder still tells one account from another.
    return QString::fromLatin1(
        QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha1)
            .toHex()
            .left(16));
#else
    return QStringLiteral("uid%1").arg(getuid());
#endif
}

bool diskeYaz(const QString &dosya)
{
    QFile f(dosya);
    if (!f.open(QIODevice::ReadWrite))
        return false;
#ifdef Q_OS_WIN
    return _commit(f.handle()) == 0;
#else
    return fsync(f.handle()) == 0;
#endif
}

bool klasoruDiskeYaz(const QString &klasor)
{
#ifdef Q_OS_WIN
    // NTFS keeps its own journal of names; a folder cannot be flushed from here.
    Q_UNUSED(klasor);
    return true;
#else
    const int fd = ::open(QFile::encodeName(klasor).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return false;
    const bool ok = fsync(fd) == 0;
    ::close(fd);
    return ok;
#endif
}

} // namespace base
