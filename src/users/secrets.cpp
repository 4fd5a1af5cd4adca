#include "users/secrets.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "store/settings.h"
#include "users/rights.h"

#include "base/platform.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSettings>
#include <QStandardPaths>

#include <sodium.h>

namespace users {

namespace {

const QString s_prefix = QStringLiteral("v1:");
const QString s_iniFile = QStringLiteral("VORTEL");
const QString s_iniSection = QStringLiteral("GİZLİ");
const QString s_iniKey = QStringLiteral("KART ANAHTARI");

QHash<QString, QByteArray> &keyCache()
{
    static QHash<QString, QByteArray> s_keys;
    return s_keys;
}

QByteArray readKeyFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    const QByteArray bytes = QByteArray::fromHex(f.readAll().trimmed());
    return bytes.size() == int(crypto_secretbox_KEYBYTES) ? bytes : QByteArray();
}

// Writes a new key file readable by its owner only. Two programs that race both end up with
// the one that was written first.
QByteArray writeKeyFile(const QString &path, const QByteArray &key)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::NewOnly,
               QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        const bool written = f.write(key.toHex() + '\n') > 0 && f.flush();
        f.close();
        if (written && base::diskeYaz(path))
            return key;
        f.remove();
        return QByteArray();
    }
    return readKeyFile(path);
}

// Whether a number sealed with some key is stored in the open year: then a missing key file is
// one this computer lacks, never a reason to make a new key.
bool sealedNumbersStored(store::Database &db)
{
    if (!db.isOpen(store::Store::Year))
        return false;
    store::Query q(db, QStringLiteral("SELECT 1 FROM Ogrenci WHERE Ogr_Veli_KrediKarti LIKE 'v1:%' "
                                      "LIMIT 1"));
    return !q.exec() || q.next();
}

// The office's key, from its file. A key the global store still keeps from an earlier version
// is moved into the file and taken out of the store. A new one is made only where no number is
// sealed yet, and only outside a transaction, so that a save rolled back cannot take away a
// key that numbers were already boxed with.
QByteArray officeKey(store::Database &db, bool mayMake)
{
    const QString path = KartAnahtariDosyasi();
    if (const auto it = keyCache().constFind(path); it != keyCache().constEnd())
        return *it;
    if (sodium_init() < 0)
        return QByteArray();
    QByteArray key = readKeyFile(path);
    if (key.isEmpty() && store::openStore(db, store::Store::Global, false).ok()) {
        const QByteArray kept = QByteArray::fromHex(
            store::INIAyar(db, QStringLiteral("GET"), s_iniFile, s_iniSection, s_iniKey)
                .toLatin1());
        if (kept.size() == int(crypto_secretbox_KEYBYTES)) {
            key = writeKeyFile(path, kept);
            if (key == kept) {
                const store::WriteGuardExemption own;
                store::Query forget(db, QStringLiteral("DELETE FROM IniAyar WHERE Dosya = ? AND "
                                                       "Bolum = ? AND Anahtar = ?"));
                forget.bind(s_iniFile.toUpper())
                    .bind(base::BuyukHarf(s_iniSection))
                    .bind(base::BuyukHarf(s_iniKey));
                (void)forget.exec();
            }
        } else if (mayMake && db.transactionDepth() == 0 && !sealedNumbersStored(db)) {
            QByteArray fresh(crypto_secretbox_KEYBYTES, '\0');
            randombytes_buf(fresh.data(), size_t(fresh.size()));
            key = writeKeyFile(path, fresh);
        }
    }
    if (!key.isEmpty())
        keyCache().insert(path, key);
    return key;
}

} // namespace

bool GizliMi(const QString &kayitli)
{
    return kayitli.startsWith(s_prefix);
}

QString KartAnahtariDosyasi()
{
    const QString given = qEnvironmentVariable("VORTEL_KART_ANAHTARI");
    if (!given.isEmpty())
        return given;
    const QString set = QSettings().value(QStringLiteral("kartAnahtariDosyasi")).toString();
    if (!set.isEmpty())
        return set;
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation))
        .filePath(QStringLiteral("kart-anahtari.key"));
}

QString KartAnahtariYokMesaji()
{
    return QStringLiteral("Bu okulun kart numaralarını açan anahtar bu bilgisayarda yok, bu yüzden "
                          "kart numaraları gizli gösteriliyor. Anahtar dosyasını (%1) okulun "
                          "anahtarı olan bilgisayardan bu bilgisayara aynı yere kopyalayınız.")
        .arg(QDir::toNativeSeparators(KartAnahtariDosyasi()));
}

bool KartAnahtariVar(store::Database &db)
{
    return !officeKey(db, false).isEmpty();
}

base::Result<QString> GizliYaz(store::Database &db, const QString &acik)
{
    if (acik.isEmpty())
        return QString();
    // A number this computer could not open travels back as it was stored.
    if (GizliMi(acik))
        return acik;
    const QByteArray k = officeKey(db, true);
    if (k.isEmpty()) {
        return base::Error{3146,
                           QStringLiteral("Kart numarası kaydedilmedi: ") + KartAnahtariYokMesaji(),
                           QStringLiteral("Modul:GizliYaz")};
    }
    const QByteArray plain = acik.toUtf8();
    QByteArray box(int(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES) + plain.size(),
                   '\0');
    auto *nonce = reinterpret_cast<unsigned char *>(box.data());
    randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(nonce + crypto_secretbox_NONCEBYTES,
                          reinterpret_cast<const unsigned char *>(plain.constData()),
                          size_t(plain.size()), nonce,
                          reinterpret_cast<const unsigned char *>(k.constData()));
    return s_prefix + QString::fromLatin1(box.toBase64());
}

QString GizliOku(store::Database &db, const QString &kayitli)
{
    if (!GizliMi(kayitli))
        return kayitli;
    const QByteArray k = officeKey(db, false);
    const QByteArray box = QByteArray::fromBase64(kayitli.mid(s_prefix.size()).toLatin1());
    const int header = int(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES);
    if (k.isEmpty() || box.size() < header)
        return kayitli;
    QByteArray plain(box.size() - header, '\0');
    const auto *nonce = reinterpret_cast<const unsigned char *>(box.constData());
    if (crypto_secretbox_open_easy(reinterpret_cast<unsigned char *>(plain.data()),
                                   nonce + crypto_secretbox_NONCEBYTES,
                                   size_t(box.size()) - crypto_secretbox_NONCEBYTES, nonce,
                                   reinterpret_cast<const unsigned char *>(k.constData()))
        != 0) {
        return kayitli;
    }
    return QString::fromUtf8(plain);
}

QString KartNoMaskele(const QString &kartNo)
{
    if (GizliMi(kartNo))
        return QStringLiteral("•••• •••• •••• ••••");
    QString digits;
    for (const QChar c : kartNo) {
        if (c.isDigit())
            digits += c;
    }
    if (digits.isEmpty())
        return QString();
    return QStringLiteral("•••• •••• •••• ") + digits.right(4);
}

bool KartNoGorebilir(store::Database &db)
{
    const base::Result<Hak> hak = HakOku(db, KartNoGormeAraci);
    return hak && hak->okuma;
}

} // namespace users
