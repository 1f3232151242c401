#!/usr/bin/env perl
# Checks that what the documents refer to exists: doc_references.pl BUILD [ROOT]
#
#   links         to files of this tree and to headings
#   `paths`       of files and folders, also the last part of a path, such as `tool/Main.java`
#   `LEVEL.NAME`  tests of BUILD, such as `unit.LogGate`
#   `SUITE.NAME`  C++ tests of BUILD, such as `LogGate.Passes*`
#
# Other words are not checked, and nothing in code blocks. Sections that a document has twice are found, too, except in
# the list of changes.
use strict;
use warnings;
use Cwd qw(realpath);
use File::Basename qw(dirname);
use File::Find;
use File::Temp qw(tempdir);

my $build = realpath($ARGV[0]);
chdir(realpath($ARGV[1] // dirname(realpath(__FILE__)) . '/../..')) or die "no such folder\n";

# Every file and folder, by each of its last parts.
my (@files, %paths);
find({no_chdir => 1, wanted => sub {
    s{^\./}{};
    $File::Find::prune = $_ eq 'build' || $_ eq '.git';
    return if $File::Find::prune || $_ eq '.';
    push @files, $_ if -f;
    for (my $path = $_; ; ) {
        $paths{$path} = 1;
        last if $path !~ s{^[^/]*/}{};
    }
}}, '.');

# Listing the tests of a folder empties its log, which another check reads: the listing has a folder of its own.
my $listing = tempdir(CLEANUP => 1);
open my $entries, '>', "$listing/CTestTestfile.cmake" or die $!;
print $entries "subdirs(\"$build\")\n";
close $entries;
my @tests = map { /^ *Test *#\d+: (.*)/ ? $1 : () } `ctest --test-dir '$listing' -N`;
my $levels = join '|', sort keys %{{map { /^([^.]*)/ => 1 } @tests}};
# C++ tests as SUITE.NAME. A suite is listed as INSTANCE/SUITE if it is parameterized, and as SUITE/TYPE if it is typed.
my @cxx_tests;
for my $program (glob "'$build'/bin/{unit,host}*_tests") {
    my @suites;
    for (`'$program' --gtest_list_tests`) {
        @suites = split m{/}, $1 if m{^([A-Za-z0-9_/]+)\.};
        next unless /^  (\w+)/;
        my $name = $1;
        push @cxx_tests, map { "$_.$name" } @suites;
    }
}

my $wrong = 0;
sub missing { print "$_[0]: $_[1]\n"; $wrong = 1; }

# The text without code blocks.
sub prose {
    my ($document) = @_;
    my ($text, $in_code) = ('', 0);
    open my $lines, '<', $document or die "$document: $!\n";
    while (<$lines>) {
        if (/^```/) {
            $in_code = !$in_code;
        } elsif (!$in_code && !/^    /) {
            $text .= $_;
        }
    }
    return $text;
}

# Whether a document has a heading; links have it in small letters with hyphens.
my %headings; # by document
sub has_heading {
    my ($document, $wanted) = @_;
    $headings{$document} //= { map { (lc tr/ /-/r) =~ s/[^a-z0-9_-]//gr => 1 } prose($document) =~ /^#+ (.*)$/mg };
    return $headings{$document}{$wanted};
}

my @documents = grep { m{^([A-Z]+|docs/[^/]*)\.md$} } sort @files;
for my $document (@documents) {
    my $prose = prose($document);
    my %seen;
    if ($document ne 'CHANGELOG.md') {
        missing($document, "the section '$_' is there twice") for grep { $seen{$_}++ == 1 } $prose =~ /^#+ (.*)$/mg;
    }
    for my $target ($prose =~ /\]\(([^):]+)\)/g) {
        my ($file, $heading) = split /#/, $target, 2;
        my $path = $file eq '' ? $document : dirname($document) . "/$file";
        if (!-e $path) {
            missing($document, "the link $target leads nowhere");
        } elsif (defined $heading && !has_heading($path, $heading)) {
            missing($document, "the link $target names no heading");
        }
    }
    my %words = map { $_ => 1 } $prose =~ /`([^`\n]+)`/g;
    for my $word (sort keys %words) {
        if ($word =~ /^($levels)\.([A-Za-z][A-Za-z_-]*(?:\.[a-z]+)?)$/) {
            my ($level, $suite) = ($1, $2);
            missing($document, "there is no test $word") unless $paths{$word} ||
                grep { m{^$level\.([A-Za-z]+/)?\Q$suite\E(/[0-9A-Za-z]+)?(\.|$)} } @tests;
        } elsif ($word =~ /^([A-Z][A-Za-z0-9]*)\.([A-Z*][A-Za-z0-9*]*)$/ && $1 ne 'TvContract') { # Android's class
            my ($suite, $name) = ($1, $2);
            $name =~ s/\*/.*/g;
            missing($document, "there is no test $word") unless grep { /^$suite\.$name$/ } @cxx_tests;
        } elsif ($word =~ m{^[a-zA-Z.][A-Za-z0-9_.-]*(/[A-Za-z0-9_.-]+)*(/|\.(h|cpp|sh|pl|bats|java|md|cmake|txt|map|bp|c))$} ||
            ($word =~ m{^([a-z.][A-Za-z0-9_.-]*)/[A-Za-z0-9_./-]*$} && -e $1)) {
            next if $word =~ m{^(\./|build/|lib/|cache/$|data/$|undo/$|3rd/$|mnt/)}; # made while working
            next if $word eq 'jni.h'; # the JDK's
            missing($document, "there is no $word") unless $paths{$word =~ s{/$}{}r};
        }
    }
}
exit 1 if $wrong;
printf "everything that %d documents refer to exists\n", scalar @documents;
