#include "store/settings.h"

#include "base/turkish_text.h"
#include "store/database.h"

namespace store {

QString INIAyar(const QString &mod, const QString &dosya, const QString &bolum,
                const QString &anahtar, const QString &deger)
{
    return INIAyar(defaultDatabase(), mod, dosya, bolum, anahtar, deger);
}

namespace {

// INI names are matched without regard to case and kept folded to upper case: file names as the
// file system folds them, sections and keys by the Turkish rules of the office's machines
// ("açıklamalar" is "AÇIKLAMALAR").
QString fileKey(const QString &dosya)
{
    return dosya.trimmed().toUpper();
}

QString nameKey(const QString &name)
{
    return base::BuyukHarf(name.trimmed());
}

} // namespace

base::Status IniYaz(Database &db, const QString &dosya, const QString &bolum,
                    const QString &anahtar, const QString &deger)
{
    // Settings are written by the program for whoever uses it.
    const WriteGuardExemption own;
    const Operation op(db, Store::Global, QStringLiteral("Modul:INIAyar"));
    if (!op)
        return op.error();
    Transaction tx(db);
    if (!tx)
        return tx.error();
    Query update(db, QStringLiteral("UPDATE IniAyar SET Deger = ? WHERE Dosya = ? AND "
                                    "Bolum = ? AND Anahtar = ?"));
    update.bind(deger).bind(fileKey(dosya)).bind(nameKey(bolum)).bind(nameKey(anahtar));
    if (!update.exec())
        return op.failed(update);
    if (update.rowsAffected() == 0) {
        Query insert(db, QStringLiteral("INSERT INTO IniAyar (Dosya, Bolum, Anahtar, Deger) "
                                        "VALUES (?, ?, ?, ?)"));
        insert.bind(fileKey(dosya)).bind(nameKey(bolum)).bind(nameKey(anahtar)).bind(deger);
        if (!insert.exec())
            return op.failed(insert);
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

QString INIAyar(Database &db, const QString &mod, const QString &dosya, const QString &bolum,
                const QString &anahtar, const QString &deger)
{
    if (mod.isEmpty())
        return QStringLiteral("Mode Hatası");
    if (bolum.isEmpty())
        return QStringLiteral("Secname Hatası");
    if (anahtar.isEmpty())
        return QStringLiteral("Keyname Hatası");
    const QString upperMode = mod.toUpper();
    const QString file = fileKey(dosya);
    const QString section = nameKey(bolum);
    const QString key = nameKey(anahtar);
    if (upperMode == QLatin1String("GET")) {
        if (!openStore(db, Store::Global, false))
            return QString();
        Query q(db, QStringLiteral("SELECT Deger FROM IniAyar WHERE Dosya = ? AND Bolum = ? "
                                   "AND Anahtar = ?"));
        q.bind(file).bind(section).bind(key);
        if (!q.exec() || !q.next())
            return QString();
        // As the profile call did: read into 255 characters, trimmed; the default "Failed"
        // stands for a missing key.
        const QString value = q.value(0).toString().left(254).trimmed();
        return value.startsWith(QLatin1String("Failed")) ? QString() : value;
    }
    if (upperMode == QLatin1String("WRITE")) {
        if (deger.isNull())
            return QStringLiteral("ERROR KeyValue");
        (void)IniYaz(db, dosya, bolum, anahtar, deger);
        return QString();
    }
    return QString();
}

} // namespace store
