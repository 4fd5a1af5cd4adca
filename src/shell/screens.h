#pragma once

namespace shell {

// Registers the screens of every subsystem, once, at the start.
void TumEkranlariKaydet();

} // namespace shell
