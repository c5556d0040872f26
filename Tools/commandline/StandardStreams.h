#pragma once

/**
 * Keeps the numbers of standard input, output and error from the files that the program opens: a program that
 * was started with one of them closed would print into such a file. What is printed to a closed standard
 * output fails, and `FinishOutput` says so. Comes first in a program.
 */
void HoldStandardStreams();

/** @return whether standard output is a pipe that nobody reads any more, as that into `head`. */
bool IsOutputUnread();

/** @return whether something that was printed did not arrive. */
bool IsOutputIncomplete();

/**
 * Brings what was printed to its end; comes last in a program.
 *
 * @return inExitCode, but 1 in place of 0 where what was printed did not arrive (a full disk, a closed
 * standard output), which a sentence on standard error says.
 */
int FinishOutput(int inExitCode);
