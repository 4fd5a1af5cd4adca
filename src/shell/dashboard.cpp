#include "shell/dashboard.h"

#include "base/turkish_text.h"
#include "fees/ledger.h"
#include "store/database.h"

#include <QDate>

namespace shell {

base::Result<PanoBilgisi> RaporHazirla(store::Database &db, const QString &cariAy)
{
    PanoBilgisi pano;
    const int year = cariAy.left(4).toInt();
    const int month = cariAy.right(2).toInt();
    pano.ayAdi = base::AyAdi(month);
    // The main window has said all there is to say about a year that does not open.
    const store::Operation op(db, store::Store::Year, QStringLiteral("FrmBackGround:RaporHazirla"),
                              store::Operation::Notice::Quiet);
    if (!op)
        return op.error();

    store::Query count(db, QStringLiteral("SELECT count(KayitID) AS TOPLAMOGRENCI FROM Ogrenci"));
    if (!count.exec() || !count.next())
        return op.failed(count);
    pano.ogrenciSayisi = count.integer(0);
    count.finish();

    const QDate first(year, month, 1);
    if (!first.isValid())
        return pano;
    const base::Result<QList<fees::AyToplami>> months
        = fees::AyToplamlari(db, base::AyEkle(first, 1), op.label());
    if (!months)
        return months.error();
    const int current = year * 100 + month;
    for (const fees::AyToplami &m : *months) {
        const int key = m.yil * 100 + m.ay;
        const base::Para rest = m.odenecek - m.odenen;
        if (key < current)
            pano.gecmis += rest;
        else if (key == current)
            pano.buAy = rest;
    }
    pano.toplam = pano.gecmis + pano.buAy;
    return pano;
}

} // namespace shell
