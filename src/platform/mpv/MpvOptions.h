#pragma once

// The fixed settings the player gives libmpv before it starts it. The
// volume and the caller's own options follow them.

struct MpvOption
{
    const char *name;
    const char *value;
};

inline constexpr MpvOption MpvPlayerOptions[] = {
    // No video output yet; a render widget will replace this.
    {"vo", "null"},
    // With no working sound output mpv would drop the audio track, and an
    // audio file would neither run nor report a length: play it silently
    // instead, so the position moves and the typist sees why nothing is
    // heard.
    {"audio-fallback-to-null", "yes"},
    // A playlist (.m3u, .pls, .cue) is not followed: the file opened is the
    // media, and a list fails as any other file that is not media.
    {"access-references", "no"},
    // At the end of the media, keep the file open and paused at its end,
    // which is what the stopped state at the end is made of.
    {"keep-open", "yes"},
    {"idle", "yes"},
    // The program owns the keyboard, the terminal and the configuration;
    // each built-in script would also bring the Lua interpreter in.
    {"input-default-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"terminal", "no"},
    {"config", "no"},
    {"osc", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    // A slowed-down voice keeps its pitch.
    {"audio-pitch-correction", "yes"},
    // Seeks land on the exact sample, not on the nearest key frame.
    {"hr-seek", "yes"},
};
