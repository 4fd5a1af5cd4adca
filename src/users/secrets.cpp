#include "users/secrets.h"

#include "store/settings.h"
#include "base/turkish_text.h"
#include "store/database.h"
#include "users/rights.h"

#include <QByteArray>
#include <QHash>

#include <sodium.h>

namespace users {

namespace {

const QString s_prefix = QStringLiteral("v1:");

// The office's key, made once, kept in the global store; cached by the store it came from, once
// it stands committed there. A key is only made outside a transaction, so that a save rolled
// back cannot take away a key that numbers were already boxed with.
QByteArray officeKey(store::Database &db, bool mayMake)
{
    static QHash<QString, QByteArray> s_keys;
    const QString where = db.settings().describe();
    if (const auto it = s_keys.constFind(where); it != s_keys.constEnd())
        return *it;
    if (sodium_init() < 0 || !store::openStore(db, store::Store::Global, false))
        return QByteArray();
    const QString file = QStringLiteral("VORTEL");
    const QString section = QStringLiteral("GİZLİ");
    const QString key = QStringLiteral("KART ANAHTARI");
    QString hex = store::INIAyar(db, QStringLiteral("GET"), file, section, key);
    if (hex.isEmpty()) {
        if (!mayMake || db.transactionDepth() > 0)
            return QByteArray();
        // The first workstation to need it makes it; a second one that raced it reads the first's.
        QByteArray fresh(crypto_secretbox_KEYBYTES, '\0');
        randombytes_buf(fresh.data(), size_t(fresh.size()));
        const store::WriteGuardExemption own;
        store::Query insert(db, QStringLiteral("INSERT INTO IniAyar (Dosya, Bolum, Anahtar, Deger) "
                                               "VALUES (?, ?, ?, ?)"));
        insert.bind(file.toUpper()).bind(base::BuyukHarf(section)).bind(base::BuyukHarf(key))
            .bind(QString::fromLatin1(fresh.toHex()));
        (void) insert.exec();
        hex = store::INIAyar(db, QStringLiteral("GET"), file, section, key);
    }
    const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
    if (bytes.size() != int(crypto_secretbox_KEYBYTES))
        return QByteArray();
    s_keys.insert(where, bytes);
    return bytes;
}

} // namespace

bool GizliMi(const QString &kayitli)
{
    return kayitli.startsWith(s_prefix);
}

base::Result<QString> GizliYaz(store::Database &db, const QString &acik)
{
    if (acik.isEmpty())
        return QString();
    const QByteArray k = officeKey(db, true);
    if (k.isEmpty()) {
        return base::Error{3146,
                            QStringLiteral("Kart numaralarının şifreleme anahtarı hazırlanamadı; kart "
                                           "numarası kaydedilmedi."),
                            QStringLiteral("Modul:GizliYaz")};
    }
    const QByteArray plain = acik.toUtf8();
    QByteArray box(int(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES) + plain.size(), '\0');
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
        return QString();
    QByteArray plain(box.size() - header, '\0');
    const auto *nonce = reinterpret_cast<const unsigned char *>(box.constData());
    if (crypto_secretbox_open_easy(reinterpret_cast<unsigned char *>(plain.data()),
                                   nonce + crypto_secretbox_NONCEBYTES,
                                   size_t(box.size()) - crypto_secretbox_NONCEBYTES, nonce,
                                   reinterpret_cast<const unsigned char *>(k.constData()))
        != 0) {
        return QString();
    }
    return QString::fromUtf8(plain);
}

QString KartNoMaskele(const QString &kartNo)
{
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
