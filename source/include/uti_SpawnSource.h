#pragma once

#include "uti_Spawn.h"

/// A child that writes to this process: a pipe is its standard output.
///
/// Ownership, errors: as uti_SpawnSink.
/// Destroying: closes the pipe and waits for the child's end.
/// Example:    uti_SpawnSource lister("ls -1 jobs"); const cow_String names = lister.ReadAll();
class VEXOMU_API uti_SpawnSource : public uti_Spawn
{
public:
    explicit uti_SpawnSource(const cow_String& command, const Environment& env = {});
    ~uti_SpawnSource() override;

    /// Closes the pipe of a running child, so that its further writing fails, and waits as uti_Spawn does, even if not at
    /// all. Of a child that has ended the pipe stays open, to be read: promised, and it must stay.
    int Reap(int seconds) override;
    /// Closes the pipe of a running child and lets it go.
    void Detach() override;

    /// The end to read from, a C runtime descriptor in text mode; -1 once it is closed.
    int Source() const noexcept { return m_source.Get(); }
    /// Reads what is there, waiting for the first byte; 0 at the end. A child ended from outside ends it too, though a
    /// process of its own may still hold the pipe.
    int Read(char* buffer, int size) { return ReadFrom(m_source, buffer, size); }
    /// All up to the end.
    cow_String ReadAll() { return ReadAllFrom(m_source); }
    void CloseSource() noexcept { m_source.Close(); }

protected:
    uti_SpawnSource() noexcept = default;
    void spawnSource(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                     uti_Redirection& redirection, const Environment& env);

private:
    PipeEnd m_source;
};

/// A source whose input this process writes too; the warning at uti_SpawnSinkWithSource holds here as well.
class VEXOMU_API uti_SpawnSourceWithSink : public uti_SpawnSource
{
public:
    explicit uti_SpawnSourceWithSink(const cow_String& command, const Environment& env = {});
    ~uti_SpawnSourceWithSink() override = default;

    /// Closes both pipes of a running child and waits without a limit, whatever the limit: promised, and it must stay.
    int Reap(int seconds) override;
    void Detach() override;

    // As in uti_SpawnSink.
    int Sink() const noexcept { return m_sink.Get(); }
    void Write(std::string_view text) { WriteTo(m_sink, text); }
    void CloseSink() noexcept { m_sink.Close(); }

protected:
    void spawnSourceWithSink(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                             uti_Redirection& redirection, const Environment& env);

private:
    PipeEnd m_sink;
};
