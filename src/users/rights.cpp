#include "users/rights.h"

#include "shell/failure.h"
#include "shell/settings.h"
#include "store/database.h"
#include "ui/message.h"
#include "users/passwords.h"

namespace users {

bool HakKontrol(store::Database &db, const QString &tool)
{
    shell::CalismaDurumu &d = shell::durum();
    d.HakOkuma = false;
    d.HakYazma = false;
    const QString label = QStringLiteral("Modul:HakKontrol");
    if (!store::DatabaseAc(db, store::Store::Global, false, false))
        return false;
    store::Query count(db,
                       QStringLiteral("SELECT COUNT(Kullanici_Program) AS SAYI FROM Haklar WHERE "
                                      "TRIM(Kullanici_Program) <> ''"));
    if (!count.exec() || !count.next()) {
        shell::HataBildir(count.error(label));
        return false;
    }
    if (count.integer(0) == 0) {
        d.HakOkuma = true;
        d.HakYazma = true;
        return true;
    }
    QString kod = d.AktifKullaniciKodu;
    if (kod.isEmpty())
        kod = Sifrele(d.AktifKullanici).value_or(QString());
    store::Query row(db,
                     QStringLiteral("SELECT Haklar_Okuma, Haklar_Yazma FROM Haklar WHERE "
                                    "Kullanici_Adi = ? AND Kullanici_Program = ?"));
    row.bind(kod).bind(tool);
    if (!row.exec()) {
        shell::HataBildir(row.error(label));
        return false;
    }
    if (row.next()) {
        d.HakOkuma = row.integer(0) != 0;
        d.HakYazma = row.integer(1) != 0;
    }
    return d.HakOkuma;
}

bool HakKontrol(const QString &tool)
{
    return HakKontrol(store::defaultDatabase(), tool);
}

bool YazmaYetkisiVar()
{
    if (shell::durum().HakYazma)
        return true;
    ui::notify(QStringLiteral("Uyarı !"), YazmaYetkisiYokMesaji, ui::Icon::Warning);
    return false;
}

} // namespace users
