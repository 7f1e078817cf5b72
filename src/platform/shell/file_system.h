// What the library asks of the file system: existence tests, copies, moves,
// deletions, and the file attributes of the system the book was written for
// (hidden = 2), kept in an extended attribute where the file system allows
// one.
//
// Each call throws `Error` with the runtime's number when it fails, so that
// a report-style routine reports it and a resume-next routine passes over it:
//   53 file not found, 58 file already exists, 70 permission denied,
//   75 path/file access error, 76 path not found, 61 disk full.
#pragma once

#include <string>

namespace zelvo::shell {

enum FileAttribute : int {
    kNormal = 0,
    kReadOnly = 1,
    kHidden = 2,
    kSystem = 4,
    kArchive = 32,
};

// A regular file (hidden files included) stands at `path`.
bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);

// Copies `from` to `to`; an existing `to` is replaced only when `overwrite`
// (else 58). The copy is written beside `to` and renamed over it, so `to`
// is either the old file or the whole copy. Attributes travel with the copy.
void CopyFile(const std::string& from, const std::string& to, bool overwrite = true);

// Deletes one file (53 when there is none).
void DeleteFile(const std::string& path);

// Moves `from` to `to`, which must not exist (58).
void MoveFile(const std::string& from, const std::string& to);

// Puts `from` in the place of `to` in one step: at every moment `to` names
// either the old file or the new one. The new file and its folder are
// flushed to the disk first.
void ReplaceFile(const std::string& from, const std::string& to);

// The file's attributes (53 when there is none). Read-only comes from the
// permissions; the others from the extended attribute, 0 where there is none.
int GetAttributes(const std::string& path);
// Sets them. Where the file system keeps no extended attributes only the
// read-only bit has an effect; that is passed over silently.
void SetAttributes(const std::string& path, int attributes);

// Creates a folder and what is missing above it.
void CreateFolder(const std::string& path);

}  // namespace zelvo::shell
