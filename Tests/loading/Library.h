#pragma once

/// A handle of its own on the library, as a host takes one that does not link it, and through it the operations of
/// Initializer, which has no data of its own.
class Library {
public:
    Library();
    ~Library() { Close(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool IsOpen() const { return handle_ != nullptr; }
    /// Nothing when it is closed already.
    void Close();
    /// The system's own, the same for every handle on one loaded library.
    void* GetHandle() const { return handle_; }

    void MakeInitializer() const { Call("_ZN11KivGenerics11InitializerC1Ev"); }
    void DestroyInitializer() const { Call("_ZN11KivGenerics11InitializerD1Ev"); }
    void AssignInitializer() const;
    /// What is exported under this name; null for nothing.
    void* Find(const char* name) const;

    /// True when this process holds the library.
    static bool IsLoaded();

private:
    void Call(const char* name) const;

    void* handle_;
};
