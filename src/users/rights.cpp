#include "users/rights.h"

#include "store/database.h"
#include "users/passwords.h"
#include "users/session.h"

namespace users {

namespace {

// The logged-in user's name as table Sifre keeps it.
QString oturumKodu()
{
    const CalismaDurumu &d = durum();
    return d.AktifKullaniciKodu.isEmpty() ? Sifrele(d.AktifKullanici).value_or(QString())
                                          : d.AktifKullaniciKodu;
}

} // namespace

base::Result<bool> HaklarTanimli(store::Database &db, const QString &label)
{
    store::Query count(db, QStringLiteral("SELECT COUNT(*) FROM Haklar WHERE "
                                          "TRIM(Kullanici_Program) <> ''"));
    if (!count.exec() || !count.next())
        return count.error(label);
    return count.integer(0) > 0;
}

base::Result<Hak> HakOku(store::Database &db, const QString &tool)
{
    const store::Operation op(db, store::Store::Global, QStringLiteral("Modul:HakKontrol"));
    if (!op)
        return op.error();
    const base::Result<bool> tanimli = HaklarTanimli(db, QStringLiteral("Modul:HakKontrol"));
    if (!tanimli)
        return tanimli.error();
    if (!*tanimli)
        return Hak{true, true};
    store::Query row(db, QStringLiteral("SELECT Haklar_Okuma, Haklar_Yazma FROM Haklar WHERE "
                                        "Kullanici_Adi = ? AND Kullanici_Program = ?"));
    row.bind(oturumKodu()).bind(tool);
    if (!row.exec())
        return op.failed(row);
    if (!row.next())
        return Hak{};
    return Hak{row.integer(0) != 0, row.integer(1) != 0};
}

base::Result<std::optional<QSet<QString>>> OkunabilirKomutlar(store::Database &db)
{
    const store::Operation op(db, store::Store::Global, QStringLiteral("Modul:MenuDurumAyarla"));
    if (!op)
        return op.error();
    const base::Result<bool> tanimli = HaklarTanimli(db, QStringLiteral("Modul:MenuDurumAyarla"));
    if (!tanimli)
        return tanimli.error();
    if (!*tanimli)
        return std::optional<QSet<QString>>();
    store::Query rows(db, QStringLiteral("SELECT Kullanici_Program FROM Haklar WHERE "
                                         "Kullanici_Adi = ? AND Haklar_Okuma <> 0"));
    rows.bind(oturumKodu());
    if (!rows.exec())
        return op.failed(rows);
    QSet<QString> tools;
    while (rows.next())
        tools.insert(rows.text(0));
    return std::optional<QSet<QString>>(tools);
}

base::Result<bool> HakKontrol(store::Database &db, const QString &tool)
{
    CalismaDurumu &d = durum();
    const base::Result<Hak> hak = HakOku(db, tool);
    d.HakOkuma = hak && hak->okuma;
    d.HakYazma = hak && hak->yazma;
    if (!hak)
        return hak.error();
    return d.HakOkuma;
}

base::Status YazmaYetkisiVar()
{
    if (durum().HakYazma)
        return {};
    return base::Error::refusal(QStringLiteral("Uyarı !"), YazmaYetkisiYokMesaji);
}

} // namespace users
