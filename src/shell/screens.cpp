#include "shell/screens.h"

#include "shell/frm_okul_bilgileri.h"

#include <QHash>

#include <functional>

namespace shell {

QWidget *EkranYarat(const QString &formName, const EkranBaglami &baglam)
{
    using Maker = std::function<QWidget *(const EkranBaglami &)>;
    static const QHash<QString, Maker> s_screens = {
        {QStringLiteral("FrmOkulBilgileri"),
         [](const EkranBaglami &b) { return new FrmOkulBilgileri(b.db); }},
    };
    const auto it = s_screens.constFind(formName);
    return it == s_screens.constEnd() ? nullptr : (*it)(baglam);
}

} // namespace shell
