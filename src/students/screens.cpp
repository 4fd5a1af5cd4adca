#include "students/screens.h"

#include "shell/screen_registry.h"
#include "students/form_sinif_atlatma.h"
#include "students/frm_hizli_ogrenci_kayit.h"
#include "students/frm_ogrenci.h"
#include "students/frm_toplu_sinif_degistirme.h"

namespace students {

void EkranlariKaydet()
{
    shell::EkranKaydet(QStringLiteral("FrmOgrenci"), [](const shell::EkranBaglami &b) {
        return new FrmOgrenci(b.db, b.anaPencere);
    });
    shell::EkranKaydet(QStringLiteral("FrmHizliOgrenciKayit"),
                       [](const shell::EkranBaglami &b) { return new FrmHizliOgrenciKayit(b.db); });
    shell::EkranKaydet(QStringLiteral("Form_Sinif_Atlatma"),
                       [](const shell::EkranBaglami &b) { return new Form_Sinif_Atlatma(b.db); });
    shell::EkranKaydet(QStringLiteral("FrmTopluSinifDegistirme"), [](const shell::EkranBaglami &b) {
        return new FrmTopluSinifDegistirme(b.db);
    });
}

} // namespace students
