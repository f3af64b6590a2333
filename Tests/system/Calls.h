#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Stands between the file streams and the system: the program that holds it defines the system's file operations itself,
/// counts and records them, and lets them fail.
namespace SystemCalls {

enum class Kind { Open, Read, Write, Sync, Close, Rename, Unlink, Status, ChangeMode, ChangeOwner };

/// One call that was made, and succeeded.
struct Call {
    Kind kind;
    /// The file that it is about; of a rename the old name.
    std::string path;
    /// Of a rename the new name.
    std::string newPath;
    /// Of a write.
    std::vector<std::uint8_t> bytes;
    /// Of an open: whether it makes the file.
    bool creates = false;
};

/// What happens at the k-th call of those that are watched, counted from 1.
struct Fault {
    enum class What {
        None,
        /// The call does nothing and fails with `error`; a close closes all the same.
        Fail,
        /// A read or write does half of what it is asked for; any other call does all.
        DoHalf,
        /// A read or write does nothing and answers 0; any other call does all.
        DoNothing,
        /// The process is killed before the call.
        Kill,
        /// The process is killed in the middle of a write; before any other call.
        KillHalfway,
    };
    What what = What::None;
    int at = 0;
    int error = 0;
    /// Whether every later call fails, too, the removal of files and the closing of descriptors left out.
    bool forGood = false;
};

/// As long as it lives, the calls of this thread are watched.
class Watch {
public:
    explicit Watch(const Fault& fault = {});
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// True when the fault has come to pass.
    bool HasStruck() const;
    /// The calls up to now.
    std::vector<Call> TakeCalls() const;
};

/// How many files this process has open.
int CountOpenFiles();

}  // namespace SystemCalls
