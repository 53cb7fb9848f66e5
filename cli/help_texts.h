// What --help teaches beside the list of options: of the program and of a command
// one line, and a lesson on each command's own page.
#pragma once

namespace cli {

inline constexpr const char* program_description =
    "Turns edit lists into the files of other systems and back.\n\n"
    "  edlconv convert film.edl film.adl        read one list and write it as another\n"
    "  edlconv convert --to cmx340 in.edl out   the same, with the format named\n"
    "  edlconv inspect film.edl                 show what a list holds\n"
    "  edlconv formats                          list the formats\n"
    "  edlconv aaf-dump film.aaf                show every object of an AAF file\n";

inline constexpr const char* program_footer =
    "\"edlconv COMMAND --help\" tells all options of a command.\n\n"
    "Exit codes: 0 done; 1 wrong use; 2 the input cannot be opened or is not of its format;\n"
    "3 refused, or failed while writing; 4 done, but something was dropped or refused on the\n"
    "way. What it was is told on standard error; data goes to standard output.";

inline constexpr const char* convert_summary = "Read one list and write it as another";
inline constexpr const char* inspect_summary = "Show what a list holds";
inline constexpr const char* aaf_dump_summary = "Show every object of an AAF file";
inline constexpr const char* formats_summary = "List the formats";

inline constexpr const char* convert_lesson =
    "Read one list and write it as another.\n\n"
    "  edlconv convert reel2.edl reel2.cmx\n"
    "      A CMX list as the two-channel form. Formats are found by content and name.\n"
    "  edlconv convert --frame-rate 24 --sample-rate 48000 reel2.edl reel2.adl\n"
    "      Line lists hold time code and no sample rate, and often no frame rate. An \"FCM:\"\n"
    "      line that says NON-DROP is read as 29.97, so say --frame-rate for 24, 25 and 30.\n"
    "      Without any word of a rate, 48000 Hz and 25 frames a second are assumed.\n"
    "  edlconv convert --project-title \"A Film\" --aiff reel2.edl reel2.adl\n"
    "      An audio decision list. Line lists name no audio files, so the sources get the\n"
    "      names of clips and reels; here as AIFF files.\n"
    "  edlconv convert --media /media/reels film.adl film.aaf\n"
    "      An AAF file with the audio of its edits inside, from the folder and those below it\n"
    "      that the list names; --external puts the audio beside the file. Edits without audio\n"
    "      are asked about: --assume yes leaves them out.\n"
    "  edlconv convert --channels 3:2 all.edl music.edl\n"
    "      Streams 3 and 4 alone, as streams 1 and 2.\n\n"
    "What stood at OUT before, and the files that a format puts beside it, are kept as\n"
    "\"OUT.before-edlconv\" until the new list is whole. When the export fails or is interrupted\n"
    "they come back; when the program is killed they stay there, and the next run tells.";

inline constexpr const char* inspect_lesson =
    "Show what a list holds.\n\n"
    "  edlconv inspect reel2.edl            a table of its records\n"
    "  edlconv inspect --json reel2.edl     every field, as docs/inspect_json.md tells";

inline constexpr const char* aaf_dump_lesson =
    "Show every object of an AAF file.\n\n"
    "  edlconv aaf-dump film.aaf            the whole tree, a line for each value\n"
    "  edlconv aaf-dump film.aaf | grep -n 'CANNOT BE READ'\n"
    "      What is broken in a damaged file; what can be read is shown round it.\n"
    "  edlconv aaf-dump --json film.aaf     the same as JSON, as docs/aaf_dump.md tells\n"
    "  edlconv aaf-dump --all film.aaf      with the definitions of classes and types\n\n"
    "Objects stand under the property that holds them, with the properties of their class by\n"
    "name. \"->\" refers to an object that stands elsewhere. Essence is told by its size. A class\n"
    "that neither the published model nor the file gives a name has its identifier; a property\n"
    "has its number, as in \"unknown 0x8123\", and its bytes.";

inline constexpr const char* formats_lesson =
    "List the formats: the names that --from and --to take.";

inline constexpr const char* format_footer =
    "Channel modes: audio field n of a line, from 1, plays channel n of its source on stream n\n"
    "(mode 0); channel 1 on stream n (mode 1); channel n on stream 1 (mode 2); channel 1 on\n"
    "stream 1 (mode 3). A second field of the line follows one higher.\n\n"
    "Curve numbers are those of the workstation, 0 to 116; 0 is the straight line.";

}  // namespace cli
