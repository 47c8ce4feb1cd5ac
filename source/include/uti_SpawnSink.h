#pragma once

#include "uti_Spawn.h"

/// A child that reads from this process: a pipe is its standard input.
///
/// Ownership:  owns the pipe's end, which goes with the object at the latest. Whoever closes Sink() some other way must
///             not: the number may be another's by then.
/// Errors:     as uti_Spawn. Writing after the child stopped reading fails with EPIPE; on POSIX SIGPIPE is ignored from
///             the first pipe of this kind on, see uti_Redirection.
/// Destroying: closes the pipe and waits for the child's end.
/// Example:    uti_SpawnSink sorter("sort > sorted.txt"); sorter.Write("b\na\n"); sorter.Reap(0);
class VEXOMU_API uti_SpawnSink : public uti_Spawn
{
public:
    explicit uti_SpawnSink(const cow_String& command, const Environment& env = {});
    ~uti_SpawnSink() override;

    /// Closes the pipe of a running child, which then finds the end of its input, and waits as uti_Spawn does, even if
    /// not at all. Of a child that has ended the pipe stays open: promised, and it must stay.
    int Reap(int seconds) override;
    /// Closes the pipe of a running child and lets it go.
    void Detach() override;

    /// The end to write to, a C runtime descriptor in binary mode; -1 once it is closed.
    int Sink() const noexcept { return m_sink.Get(); }
    /// Writes all of it, waiting while the pipe is full.
    void Write(std::string_view text) { WriteTo(m_sink, text); }
    void CloseSink() noexcept { m_sink.Close(); }

protected:
    uti_SpawnSink() noexcept = default;
    void spawnSink(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                   uti_Redirection& redirection, const Environment& env);

private:
    PipeEnd m_sink;
};

/// A sink whose output this process reads too. Who writes much before reading may wait for ever: the child waits for its
/// output to be read.
class VEXOMU_API uti_SpawnSinkWithSource : public uti_SpawnSink
{
public:
    explicit uti_SpawnSinkWithSource(const cow_String& command, const Environment& env = {});
    ~uti_SpawnSinkWithSource() override = default;

    /// As in uti_SpawnSink, for both pipes.
    int Reap(int seconds) override;
    void Detach() override;

    // As in uti_SpawnSource.
    int Source() const noexcept { return m_source.Get(); }
    int Read(char* buffer, int size) { return ReadFrom(m_source, buffer, size); }
    cow_String ReadAll() { return ReadAllFrom(m_source); }
    void CloseSource() noexcept { m_source.Close(); }

protected:
    void spawnSinkWithSource(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                             uti_Redirection& redirection, const Environment& env);

private:
    PipeEnd m_source;
};
