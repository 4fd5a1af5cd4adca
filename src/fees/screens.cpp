#include "fees/screens.h"

#include "fees/frm_aidat_tanimlama.h"
#include "shell/screen_registry.h"

namespace fees {

void EkranlariKaydet()
{
    shell::EkranKaydet(QStringLiteral("FrmAidatTanimlama"), [](const shell::EkranBaglami &b) {
        return static_cast<QWidget *>(new FrmAidatTanimlama(b.db));
    });
}

} // namespace fees
