#include "students/screens.h"

namespace students {

void EkranlariKaydet()
{
}

} // namespace students
