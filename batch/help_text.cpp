#include "batch/help_text.h"

namespace kelmo {

std::string_view helpText() {
    return R"(Usage: kelmo-batch kev [OPTION]... [FILE]...
       kelmo-batch vor [OPTION]... [FILE]...
       kelmo-batch merge MERGED.sqlite RESULTS.sqlite...
       kelmo-batch export RESULTS.sqlite --table NAME [--format FORMAT]
                   [--where SQL]
       kelmo-batch --help | --version

Analyses structures and writes the reports, without a window. Files are PDB text
or mmCIF, each also compressed (.gz); - is standard input.

  kev                    surface areas, depth, protrusion and hydrophobicity
  vor                    contacts between the chains of each structure
  merge                  make one results file of several, such as those of
                         the shards of a run
  export                 write a table of a results file to standard output as
                         tsv, tsv.gz, jsonl or jsonl.gz

Options:
  --config FILE          take the settings from a configuration file (default:
                         all attributes and reports; for vor by maximum
                         distance, 4.5 A)
  --set KEY=VALUE        override one setting of the configuration; repeatable
  --prepare standard     one conformation, no hydrogens, modified residues as
                         their parents, modern names understood (default:
                         as-is); --set changes single parts of it
  --output-dir DIR       write the reports to DIR, which must exist (default:
                         the configuration's output_dir, else the current
                         directory)
  --list FILE            analyse the files that FILE names, one a line;
                         repeatable and in order with the other files
  --results FILE         write the results of all files into FILE, too, in the
                         format that its name ends in: .sqlite, .tsv, .jsonl,
                         .tsv.gz or .jsonl.gz; repeatable
  --reports LIST         the formats of the reports, xml or table or xml,table,
                         or none (default: as in the configuration)
  --contact-rules FILE   vor by contact_criterion 4: the table of contact rules
                         (default: aa_contacts.txt in the current directory,
                         else the one that comes with the program)
  --jobs N               use N cores (default: all; 1 uses a single thread)
  --stamp YYYYMMDDHHMM   the time stamp in the names of the reports (default:
                         the time of the start)
  --resume               continue the interrupted run of that --stamp: files
                         whose reports are all there are not analysed again;
                         with --results, files whose results are there
  --shard K/N            analyse only the files of part K of N, told by a hash
                         of their names: for several machines
  --allow-failed         exit with 0 also where input files failed, as long as
                         all reports and results of the others were written
  --quiet                show warnings and errors only
  --no-progress          draw no progress bar (default: on a terminal only)
  --help                 show this text and exit
  --version              show the version and exit
  --                     what follows are files, whatever they begin with

Messages go to standard error. With NO_COLOR set they have no colours.

Exit status:
  0    all files were analysed and all reports written, now or before
  1    a file could not be analysed, or a report or the results not written
  2    nothing was started: wrong options, settings, tables or results files
  130  stopped by Ctrl-C; what was written is whole
)";
}

std::string versionText() {
    return "kelmo-batch " KELMO_VERSION "\n";
}

} // namespace kelmo
