#include "fees/screens.h"

namespace fees {

void EkranlariKaydet()
{
}

} // namespace fees
