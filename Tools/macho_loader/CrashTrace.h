#pragma once

/** Makes a crash of this process print its stack with the names of the images' functions, which debuggers
 * here don't know. */
void InstallCrashTrace();
