<?php
// The services on PHP's SOAP server. Each request is answered by this script from its beginning:
// the server turns the parameters into values of PHP and calls the method of the same name here,
// which notes what it got and returns values of PHP for the server to write.
declare(strict_types=1);

const SCHEMA = 'http://www.w3.org/2001/XMLSchema';

/** A value that the file of what was seen shows with its kind; JSON has no other way to tell. */
function shown(mixed $value): mixed
{
    if (is_float($value)) {
        return ['double' => is_finite($value) ? $value : (string) $value];
    }
    if (is_object($value)) {
        return (object) array_map(shown(...), get_object_vars($value));
    }
    if (is_array($value)) {
        return array_map(shown(...), $value);
    }
    if (is_string($value) && preg_match('//u', $value) !== 1) {
        return ['bytes' => bin2hex($value)];
    }
    return $value;
}

/** An object without a class of its own, from names and values. */
function bean(mixed ...$members): stdClass
{
    return (object) $members;
}

final class Services
{
    private ?string $userID = null;

    /** Called by the server for the header element of this name, ahead of the method. */
    public function userID(mixed $value): void
    {
        $this->userID = $value;
    }

    public function __call(string $method, array $parameters): mixed
    {
        $this->note($method, $parameters);
        return (new Answers())->$method(...$parameters);
    }

    private function note(string $method, array $parameters): void
    {
        $line = json_encode([
            'action' => $_SERVER['HTTP_SOAPACTION'] ?? null,
            'method' => $method,
            'userID' => $this->userID,
            'parameters' => shown($parameters),
        ], JSON_PRESERVE_ZERO_FRACTION | JSON_THROW_ON_ERROR);
        file_put_contents(getenv('FOREIGN_SEEN'), $line . "\n", FILE_APPEND);
    }
}

/** What the methods give back; one that is not here gives back a text that says that it was called. */
final class Answers
{
    public function __call(string $method, array $parameters): string
    {
        return "$method done";
    }

    public function beat(): string
    {
        return 'OK';
    }

    public function getAcknowledgement(string $gid): string
    {
        return "http://documents.example/$gid.pdf?a=1&b=2";
    }

    public function newAcknowledgement(stdClass $document): string
    {
        return 'http://documents.example/new.pdf?a=1&b=2';
    }

    public function saveRMA(stdClass $rma): stdClass
    {
        return bean(UID: 'U-7');
    }

    // The faults: by PHP's own object for them, by a code in a namespace, by an error of PHP's, which
    // its server makes a fault of, and by an exception, which it does not.
    public function getInvoice(?string $uid): ?string
    {
        return match ($uid) {
            'none' => throw new SoapFault('10041', 'There is no invoice "none" & nothing <like> it'),
            'locked' => throw new SoapFault('10055', 'Someone else has it'),
            'elsewhere' => throw new SoapFault(['urn:codes', '10041'], 'Try elsewhere'),
            'details' => throw new SoapFault('Server', 'Ask the ledger', 'urn:ledger', bean(Line: 7)),
            'fails' => $this->fail('The ledger is closed'),
            'throws' => throw new RuntimeException('The ledger is closed'),
            'bell' => "a\x07b",
            default => $uid,
        };
    }

    private function fail(string $words): never
    {
        trigger_error($words, E_USER_ERROR);
    }

    public function getOrderReconcile(string $uid, string $agent): never
    {
        throw new SoapFault('10012', "$agent has none");
    }

    public function autoReconcileSingle(string $uid, string $agent, string $date): never
    {
        throw new SoapFault('10071', 'Closed');
    }

    public function searchForAgents(string ...$criteria): never
    {
        throw new SoapFault('Server', "Too many agents in {$criteria[3]}");
    }

    public function getRFQSummary(string $quote): never
    {
        throw new SoapFault('Client', 'Too early');
    }

    // Single values.
    public function canExpirationBeOveridden(string $gid): bool
    {
        return $gid === 'Q-1';
    }

    public function getNewPriceExpirationDate(string $gid): SoapVar
    {
        $text = $gid === 'Q-1' ? '2007-01-05T00:00:00' : '2007-01-05T23:30:00-02:00';
        return new SoapVar($text, XSD_DATETIME, 'dateTime', SCHEMA);
    }

    public function getCommissionRange(int $count): int
    {
        return -$count;
    }

    public function getOrderSummary(string $gid): float
    {
        return 0.125;
    }

    public function getCommissionData(string $key): SoapVar
    {
        return new SoapVar(5000000000, XSD_LONG, 'long', SCHEMA);
    }

    public function getSAPCommissionData(string $key): float
    {
        return INF;
    }

    public function getSAPInvoice(string $uid): null
    {
        return null;
    }

    public function getAllRemarks(): SoapVar
    {
        return new SoapVar("\x00\xFF\x10A", XSD_BASE64BINARY, 'base64Binary', SCHEMA);
    }

    // Lists, structures, and both in both.
    public function searchForBrands(): array
    {
        return ['Grün', 'R & S', ''];
    }

    public function searchForDefaultAgents(): array
    {
        return [];
    }

    public function searchForPromotions(): array
    {
        return [['a'], ['b', 'c'], []];
    }

    public function searchForManufacturers(): array
    {
        return [bean(GID: 'M-1', Name: 'A <b>'), bean(GID: 'M-2', Name: null)];
    }

    public function searchForShippingMethods(): array
    {
        return [1, 'two', 2.5, true, null];
    }

    public function searchForSalesPeople(string $agent): stdClass
    {
        return bean(
            Agent: $agent,
            Count: 2,
            Share: 0.25,
            Active: true,
            Left: null,
            Since: new SoapVar('2007-01-05T13:04:09', XSD_DATETIME, 'dateTime', SCHEMA),
            Office: bean(City: 'Bonn', Phones: ['1', '2']),
        );
    }

    public function searchForSpecialCreditTerms(): stdClass
    {
        $address = bean(City: 'Bonn');
        return bean(ShipTo: $address, BillTo: $address, Others: [$address]);
    }

    public function searchForVendors(string $group): array
    {
        return ['K-1' => 1, 'K-2' => null];
    }

    public function searchForAllDistCenters(): SoapVar
    {
        return new SoapVar(
            '<Centers xmlns="urn:centers" kind="all"><Center nr="1">K&amp;L</Center></Centers>',
            XSD_ANYXML,
        );
    }

    public function getUserLogoList(): void
    {
    }
}

// Replies are in the namespace that the SOAPAction names, which PHP's server does not look at itself.
$action = trim($_SERVER['HTTP_SOAPACTION'] ?? '', '"');
$server = new SoapServer(null, ['uri' => $action !== '' ? $action : 'urn:none']);
$server->setObject(new Services());
$server->handle();
