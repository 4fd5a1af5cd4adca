#include "fees/screens.h"

#include "fees/frm_aidat_tanimlama.h"
#include "ui/screen_registry.h"

namespace fees {

void EkranlariKaydet()
{
    ui::EkranKaydet(QStringLiteral("FrmAidatTanimlama"), [](const ui::EkranBaglami &b) {
        return static_cast<QWidget *>(new FrmAidatTanimlama(b.db));
    });
}

} // namespace fees
