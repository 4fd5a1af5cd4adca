#include "shell/platform.h"

#include <QDir>
#include <QtGlobal>

#ifdef Q_OS_WIN
#include <QCryptographicHash>
#else
#include <unistd.h>
#endif

namespace shell {

QString isletimSistemiKullanicisi()
{
#ifdef Q_OS_WIN
    QString name = qEnvironmentVariable("USERDOMAIN") + QLatin1Char('-')
                   + qEnvironmentVariable("USERNAME");
    if (name.size() > 1)
        return name;
    // No name in the environment: the profile folder still tells one account from another.
    return QString::fromLatin1(
        QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
#else
    return QStringLiteral("uid%1").arg(getuid());
#endif
}

} // namespace shell
