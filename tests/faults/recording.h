// Writes down what becomes of the files below a folder, so that a loss of power can be played at
// any moment of it. A line for each change, and behind a "write" its bytes:
//
//   make PATH            there is a new file, or an old one is empty; PATH/: a new folder
//   length NUMBER PATH   a file is cut off, or gets zeros
//   write AT COUNT PATH  bytes of a file are others
//   sync PATH            a file, or the names in a folder, are on the disk
//   rename PATH PATH2
//   link PATH PATH2
//   remove PATH
//
// What is written as memory is seen when the next of these happens. Set are FAULT_RECORD, the
// file that gets the lines, and FAULT_FOLDER; the paths are below that. Nothing here allocates.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace recording {

void made(const char* path);
void folderMade(const char* path);
void lengthChanged(int file);
/// `at` below 0: at the place where the file stands now.
void written(int file, const void* bytes, std::size_t count, off_t at);
void synced(int file);
void renamed(const char* from, const char* to);
void linked(const char* from, const char* to);
void removed(const char* path);
/// The whole of a shared, writable map, and its end.
void mapped(int file, void* memory, std::size_t length, off_t at);
void unmapping(const void* memory);

/// How many were written down so far.
long changes();

/// The path of a descriptor; empty if there is none.
void pathOf(int file, char* path, std::size_t size);

}  // namespace recording
