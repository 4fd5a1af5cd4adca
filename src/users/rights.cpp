#include "users/rights.h"

#include "shell/failure.h"
#include "shell/settings.h"
#include "store/database.h"
#include "ui/message.h"
#include "users/passwords.h"

namespace users {

shell::Result<Hak> HakOku(store::Database &db, const QString &tool)
{
    const QString label = QStringLiteral("Modul:HakKontrol");
    if (shell::Status open = store::ensureOpen(db, store::Store::Global, label); !open)
        return open.error();
    store::Query count(db,
                       QStringLiteral("SELECT COUNT(Kullanici_Program) AS SAYI FROM Haklar WHERE "
                                      "TRIM(Kullanici_Program) <> ''"));
    if (!count.exec() || !count.next())
        return count.error(label);
    if (count.integer(0) == 0)
        return Hak{true, true};
    const shell::CalismaDurumu &d = shell::durum();
    const QString kod = d.AktifKullaniciKodu.isEmpty() ? Sifrele(d.AktifKullanici).value_or(QString())
                                                       : d.AktifKullaniciKodu;
    store::Query row(db,
                     QStringLiteral("SELECT Haklar_Okuma, Haklar_Yazma FROM Haklar WHERE "
                                    "Kullanici_Adi = ? AND Kullanici_Program = ?"));
    row.bind(kod).bind(tool);
    if (!row.exec())
        return row.error(label);
    if (!row.next())
        return Hak{};
    return Hak{row.integer(0) != 0, row.integer(1) != 0};
}

bool HakKontrol(store::Database &db, const QString &tool)
{
    shell::CalismaDurumu &d = shell::durum();
    const shell::Result<Hak> hak = HakOku(db, tool);
    if (!hak)
        shell::HataBildir(hak.error());
    d.HakOkuma = hak && hak->okuma;
    d.HakYazma = hak && hak->yazma;
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
