#include "users/screens.h"

namespace users {

void EkranlariKaydet()
{
}

} // namespace users
