#pragma once

/// Makes the pictures known to the process; further calls do nothing. A static library's resources
/// are not there before.
void InitResources();
