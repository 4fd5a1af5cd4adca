#pragma once

namespace users {

// Registers this subsystem's screens with the main window's command table.
void EkranlariKaydet();

} // namespace users
