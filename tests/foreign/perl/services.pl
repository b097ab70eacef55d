# The services on Perl's SOAP::Lite, with its own HTTP daemon on a free port, which is named in the
# first line. The stack makes a tree of data of the request and finds the object by the method's
# namespace; the object notes what it got and returns values of Perl for the stack to write.
use strict;
use warnings;
use utf8;

use constant LACKS_ITS_STACK => 77;

BEGIN {
    eval { require SOAP::Lite; require SOAP::Transport::HTTP; require HTTP::Daemon; 1 }
        or exit LACKS_ITS_STACK;
}
use JSON::PP ();

my $XSI  = 'http://www.w3.org/2001/XMLSchema-instance';
my $METHOD = '/Envelope/Body/[1]';
my $ENC  = 'http://schemas.xmlsoap.org/soap/encoding/';
my $JSON = JSON::PP->new->ascii->canonical;

# What the file of what was seen shows of a value: its kind by the type that the stack found, since
# Perl has none.
sub shown {
    my ($data, $type_of_items) = @_;
    my %attributes = %{ $data->attr };
    my $type = $attributes{"{$XSI}type"} // $type_of_items // '';
    $type =~ s/^\{.*\}//;
    my @children = children($data);
    if (my $array_type = $attributes{"{$ENC}arrayType"}) {
        $array_type =~ s/\[.*//;
        return [ map { shown($_, $array_type) } @children ];
    }
    return shown_members(@children) if @children;
    my $value = $data->value;
    return $value if !defined $value;
    return $value ? JSON::PP::true : JSON::PP::false if $type eq 'boolean';
    return $value + 0 if $type =~ /^(?:short|int|long)$/;
    return { double => $value + 0 } if $type eq 'double';
    return { bytes => unpack 'H*', $value } if $type eq 'base64Binary';
    return "$value";
}

# Members by their names; those of one name are a list, as they are for the stack.
sub shown_members {
    my %members;
    push @{ $members{ $_->name } }, shown($_) for @_;
    return { map { $_ => @{ $members{$_} } > 1 ? $members{$_} : $members{$_}[0] } keys %members };
}

sub children {
    my ($data) = @_;
    my $value = $data->value;
    return ref $value eq 'REF' && UNIVERSAL::isa($$value, 'SOAP::Data') ? $$value->value : ();
}

sub note {
    my ($action, $som) = @_;
    my $method     = $som->dataof($METHOD);
    my @parameters = children($method);
    my $session    = $som->dataof('/Envelope/Header/userID');
    open my $file, '>>', $ENV{FOREIGN_SEEN} or die "cannot note: $!\n";
    print {$file} $JSON->encode({
        action     => $action,
        service    => scalar($som->namespaceuriof($METHOD)) // '',
        method     => $method->name,
        userID     => $session ? $session->value : undef,
        names      => [ map { $_->name } @parameters ],
        parameters => [ map { shown($_) } @parameters ],
    }), "\n";
    close $file;
}

sub text    { return SOAP::Data->type(string => $_[0]) }
sub boolean { return SOAP::Data->type(boolean => $_[0] ? 1 : 0) }
sub moment  { return SOAP::Data->type(dateTime => $_[0]) }

# A structure whose members stand in this order, which those of a hash do not.
sub bean {
    my @members;
    while (my ($name, $value) = splice @_, 0, 2) {
        push @members, UNIVERSAL::isa($value, 'SOAP::Data') ? $value->name($name)
                                                            : SOAP::Data->name($name => $value);
    }
    return \SOAP::Data->value(@members);
}

sub fault {
    my ($code, $words) = @_;
    die SOAP::Fault->faultcode($code)->faultstring($words);
}

package Services;
our @ISA = ('SOAP::Server::Parameters');
our $AUTOLOAD;

# What the methods give back; one that is not here gives back a text that says that it was called.
my %answers = (
    beat               => sub { main::text('OK') },
    getAcknowledgement => sub { main::text("http://documents.example/$_[0].pdf?a=1&b=2") },
    newAcknowledgement => sub { main::text('http://documents.example/new.pdf?a=1&b=2') },
    getDocuments       => sub {
        map { main::text($_) } $_[0] eq 'two' ? qw(first second) : 'getDocuments done';
    },
    saveRMA            => sub { main::bean(UID => 'U-7') },

    # Faults: by the stack's own object for them, and by words alone.
    getInvoice => sub {
        my ($uid) = @_;
        main::fault('10041', 'There is no invoice "none" & nothing <like> it') if $uid eq 'none';
        main::fault('10055', 'Someone else has it') if $uid eq 'locked';
        main::fault('codes:10041', 'Try elsewhere') if $uid eq 'elsewhere';
        die SOAP::Fault->faultcode('Server')->faultstring('Ask the ledger')
            ->faultdetail(bless { Line => 7 }, 'Ledger') if $uid eq 'details';
        die "The ledger is closed\n" if $uid eq 'fails';
        return main::text("a\x07b") if $uid eq 'bell';
        return 'Grün' if $uid eq 'untyped';
        return main::text($uid);
    },
    getOrderReconcile   => sub { main::fault('10012', "$_[1] has none") },
    autoReconcileSingle => sub { main::fault('10071', 'Closed') },
    searchForAgents     => sub { main::fault('Server', "Too many agents in $_[3]") },
    getRFQSummary       => sub { main::fault('Client', 'Too early') },

    # Single values.
    canExpirationBeOveridden  => sub { main::boolean($_[0] eq 'Q-1') },
    getNewPriceExpirationDate => sub {
        main::moment($_[0] eq 'Q-1' ? '2007-01-05T00:00:00' : '2007-01-05T23:30:00-02:00');
    },
    getCommissionRange   => sub { -$_[0] },
    getOrderSummary      => sub { 0.125 },
    getCommissionData    => sub { SOAP::Data->type(long => '5000000000') },
    getSAPCommissionData => sub { SOAP::Data->type(double => 'INF') },
    getSAPInvoice        => sub { undef },
    getAllRemarks        => sub { SOAP::Data->type(base64Binary => "\x00\xFF\x10A") },
    getUserLogoList      => sub { () },

    # Lists, structures, and both in both.
    searchForBrands        => sub { [ map { main::text($_) } 'Grün', 'R & S', '' ] },
    searchForDefaultAgents => sub { [] },
    searchForPromotions    => sub { [ ['a'], [ 'b', 'c' ], [] ] },
    searchForManufacturers => sub {
        [ main::bean(GID => 'M-1', Name => 'A <b>'), main::bean(GID => 'M-2', Name => undef) ];
    },
    searchForShippingMethods => sub { [ 1, 'two', 2.5, main::boolean(1), undef ] },
    searchForSalesPeople => sub {
        main::bean(
            Agent => $_[0], Count => 2, Share => 0.25, Active => main::boolean(1), Left => undef,
            Since  => main::moment('2007-01-05T13:04:09'),
            Office => main::bean(City => 'Bonn', Phones => [ map { main::text($_) } 1, 2 ]),
        );
    },
    searchForSpecialCreditTerms => sub {
        my $address = { City => 'Bonn' };
        main::bean(ShipTo => $address, BillTo => $address, Others => [$address]);
    },
    searchForAllDistCenters => sub {
        SOAP::Data->type(xml =>
            '<Centers xmlns="urn:centers" kind="all"><Center nr="1">K&amp;L</Center></Centers>');
    },
);

my $daemon;

sub AUTOLOAD {
    my $self = shift;
    my $som  = pop;
    my ($method) = $AUTOLOAD =~ /(\w+)$/;
    return if $method eq 'DESTROY';
    main::note(scalar $daemon->request->header('SOAPAction'), $som);
    return exists $answers{$method} ? $answers{$method}->(@_) : main::text("$method done");
}

package main;

my @services = map { "urn:$_" } qw(
    InvoiceService SearchService MaintenanceService SummaryService OrderService QuoteService
    ProjectService ProductService SubmittalService RMAService SalesInstrumentService
    InventoryInquiryService HeartBeatService Postal);
push @services, '', 'http://config.brimvale.example/TorvexConfig',
    'http://torvex.brimvale.example/services/';

my $object = bless {}, 'Services';
$daemon = SOAP::Transport::HTTP::Daemon->new(LocalAddr => '127.0.0.1', LocalPort => 0);
$daemon->dispatch_with({ map { $_ => $object } @services });
# Two of its checks are relaxed: it expects namespace, "#" and method in a SOAPAction, where ours is
# the namespace alone, and it knows no encoding for a document that stands for itself.
push @SOAP::Constants::SUPPORTED_ENCODING_STYLES, 'http://xml.apache.org/xml-soap/literalxml';
$daemon->on_action(sub { });
$| = 1;
print 'http://127.0.0.1:', $daemon->sockport, "\n";
$daemon->handle;
