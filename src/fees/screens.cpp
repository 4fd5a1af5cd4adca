#include "fees/screens.h"

#include "fees/frm_aidat_tanimlama.h"
#include "fees/frm_log.h"
#include "fees/frm_ogrenci_aidat.h"
#include "ui/screen_registry.h"

namespace fees {

void EkranlariKaydet()
{
    ui::EkranKaydet(QStringLiteral("FrmAidatTanimlama"), [](const ui::EkranBaglami &b) {
        return static_cast<QWidget *>(new FrmAidatTanimlama(b.db));
    });
    ui::EkranKaydet(QStringLiteral("Frm_Log"), [](const ui::EkranBaglami &b) {
        return static_cast<QWidget *>(new FrmLog(b.db));
    });
    ui::EkranKaydet(QStringLiteral("FrmOgrenciAidat"), [](const ui::EkranBaglami &b) {
        auto *ekran = new FrmOgrenciAidat(b.db);
        ekran->ekranAyarla(b.ayar);
        return static_cast<QWidget *>(ekran);
    });
}

} // namespace fees
