#pragma once

/**
 * From now on an interrupt (SIGINT, SIGTERM, SIGHUP) of this process says so on the standard error, ends what
 * the process has started and removes what it has not finished, before it ends the process as it always did.
 * One that is ignored stays ignored. Processes that are forked from this one just end.
 */
void EndCleanlyOnInterrupts();
