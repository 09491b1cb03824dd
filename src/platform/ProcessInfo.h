#pragma once

// Resident memory of this process in kB, from the kernel's status file;
// -1 where it cannot be read.
long residentMemoryKb();
