#include "shell/settings.h"

#include "shell/turkish_text.h"
#include "store/database.h"

namespace shell {

CalismaDurumu &durum()
{
    static CalismaDurumu s_durum;
    return s_durum;
}

const QList<OdemeSekli> &OdemeSekilleriTablosu()
{
    static const QList<OdemeSekli> s_table = {
        {QString(), QString()},
        {QStringLiteral("K"), QStringLiteral("Kredi Kart")},
        {QStringLiteral("N"), QStringLiteral("Nakit")},
        {QStringLiteral("C"), QStringLiteral("Çek")},
        {QStringLiteral("S"), QStringLiteral("Senet")},
        {QStringLiteral("B"), QStringLiteral("Banka")},
        {QStringLiteral("L"), QStringLiteral("Bloke")},
        {QStringLiteral("D"), QStringLiteral("Diğer")},
        {QStringLiteral("T"), QStringLiteral("Kredi Kartı Taksit")},
        {QStringLiteral("M"), QStringLiteral("Mail Order")},
        {QStringLiteral("E"), QStringLiteral("Eğitim Destek")},
    };
    return s_table;
}

QString OdemeSekliAdi(const QString &kod)
{
    for (const OdemeSekli &s : OdemeSekilleriTablosu()) {
        if (s.kod == kod)
            return s.ad;
    }
    return QString();
}

QString INIAyar(const QString &mod, const QString &dosya, const QString &bolum,
                const QString &anahtar, const QString &deger)
{
    return INIAyar(store::defaultDatabase(), mod, dosya, bolum, anahtar, deger);
}

QString INIAyar(store::Database &db, const QString &mod, const QString &dosya,
                const QString &bolum, const QString &anahtar, const QString &deger)
{
    if (mod.isEmpty())
        return QStringLiteral("Mode Hatası");
    if (bolum.isEmpty())
        return QStringLiteral("Secname Hatası");
    if (anahtar.isEmpty())
        return QStringLiteral("Keyname Hatası");
    const QString upperMode = mod.toUpper();
    // INI names are matched without regard to case and kept folded to upper case: file names
    // as the file system folds them, sections and keys by the Turkish rules of the office's
    // machines ("açıklamalar" is "AÇIKLAMALAR").
    const QString file = dosya.trimmed().toUpper();
    const QString section = BuyukHarf(bolum.trimmed());
    const QString key = BuyukHarf(anahtar.trimmed());
    if (upperMode == QLatin1String("GET")) {
        if (!store::DatabaseAc(db, store::Store::Global, true, false))
            return QString();
        store::Query q(db,
                       QStringLiteral("SELECT Deger FROM IniAyar WHERE Dosya = ? AND Bolum = ? "
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
        // Settings are written by the program for whoever uses it.
        const store::WriteGuardExemption own;
        if (!store::DatabaseAc(db, store::Store::Global, true, false))
            return QString();
        store::Transaction tx(db);
        if (!tx)
            return QString();
        store::Query update(db,
                            QStringLiteral("UPDATE IniAyar SET Deger = ? WHERE Dosya = ? AND "
                                           "Bolum = ? AND Anahtar = ?"));
        update.bind(deger).bind(file).bind(section).bind(key);
        if (!update.exec())
            return QString();
        if (update.rowsAffected() == 0) {
            store::Query insert(db,
                                QStringLiteral("INSERT INTO IniAyar (Dosya, Bolum, Anahtar, "
                                               "Deger) VALUES (?, ?, ?, ?)"));
            insert.bind(file).bind(section).bind(key).bind(deger);
            if (!insert.exec())
                return QString();
        }
        (void) tx.commit();
        return QString();
    }
    return QString();
}

} // namespace shell
