#pragma once

namespace students {

// Registers this subsystem's screens with the main window's command table.
void EkranlariKaydet();

} // namespace students
