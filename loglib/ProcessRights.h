#pragma once

namespace bridge {

// Whether this process may do more than an ordinary program of the user who started it: it is elevated, or its
// integrity is above the ordinary one, or it runs in the session of the services. True also when that cannot be found
// out.
bool HasHigherRights() noexcept;

}  // namespace bridge
