#pragma once
#include <string>

#include <sys/types.h>

/**
 * What has to go with this process, however it ends: process groups, temporary folders, files without their
 * final name yet.
 *
 * A small process is forked when something is noted for the first time. It sees by a pipe that this process
 * has ended, by a kill too, and then kills the groups, waits until they are gone, and removes the rest. A
 * process that is forked from this one, without another program, notes at the same watcher, which goes by the
 * end of the first process only.
 *
 * Main thread only. Where no process can be started nothing is watched, and nothing else changes.
 */

/** Before the first process is started that shall note at the same watcher; otherwise with the first note. */
void StartWatcher();

/** Is noted before it is made: then there is no moment at which it would stay. */
void WatchFile(const std::string& inPath);
void WatchFolder(const std::string& inPath);
/** @param inLeader the process that leads the group. */
void WatchGroup(pid_t inLeader);

/** For what has got its final name, or is gone. */
void Unwatch(const std::string& inPath);
/** Before the leader is waited for: its number may be another's afterwards. */
void Unwatch(pid_t inLeader);

/**
 * Has the watcher do its work now and waits for that, and for every child: for the end of a process only.
 * Safe in a signal handler. Does nothing in a forked process and where nothing is watched.
 */
void EndWatcher() noexcept;

/** A name that nobody else has: inBeginning and random digits. */
std::string UniqueName(const std::string& inBeginning);
