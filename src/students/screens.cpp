#include "students/screens.h"

#include "students/form_sinif_atlatma.h"
#include "students/frm_hizli_ogrenci_kayit.h"
#include "students/frm_ogrenci.h"
#include "students/frm_ogrenci_list.h"
#include "students/frm_toplu_sinif_degistirme.h"
#include "ui/screen_registry.h"

namespace students {

void EkranlariKaydet()
{
    ui::EkranKaydet(QStringLiteral("FrmOgrenci"),
                    [](const ui::EkranBaglami &b) { return new FrmOgrenci(b.db, b.anaPencere); });
    ui::EkranKaydet(QStringLiteral("FrmHizliOgrenciKayit"),
                    [](const ui::EkranBaglami &b) { return new FrmHizliOgrenciKayit(b.db); });
    ui::EkranKaydet(QStringLiteral("Form_Sinif_Atlatma"),
                    [](const ui::EkranBaglami &b) { return new Form_Sinif_Atlatma(b.db); });
    ui::EkranKaydet(QStringLiteral("FrmTopluSinifDegistirme"),
                    [](const ui::EkranBaglami &b) { return new FrmTopluSinifDegistirme(b.db); });
    // The pick-list of students, for the screens of other subsystems.
    ui::SeciciKaydet(QStringLiteral("OgrenciListesi"), [](store::Database &db, QWidget *parent) {
        FrmOgrenciList liste(db, parent);
        QVariant secilen;
        QObject::connect(&liste, &FrmOgrenciList::ogrenciSecildi,
                         [&secilen](qint64 kayitId) { secilen = kayitId; });
        liste.exec();
        return secilen;
    });
}

} // namespace students
