"""The requests that load the sandbox, as the library would send them."""

import json
import urllib.request

ENVELOPE = (
    '<?xml version="1.0" encoding="UTF-8"?>\n'
    '<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/" '
    'xmlns:SOAP-ENC="http://schemas.xmlsoap.org/soap/encoding/" '
    'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" '
    'xmlns:xsd="http://www.w3.org/2001/XMLSchema">'
    '<SOAP-ENV:Header><userID xsi:type="xsd:string">S-1</userID></SOAP-ENV:Header>'
    '<SOAP-ENV:Body><m:{method} xmlns:m="{service}">{parameters}</m:{method}>'
    "</SOAP-ENV:Body></SOAP-ENV:Envelope>"
)
LINE = (
    "<Line><GID>LINE-{0}</GID><CatalogNumber>BV-{0}</CatalogNumber><Quantity>{0}</Quantity>"
    "<Price>19.{0}</Price></Line>"
)
LINES = "".join(LINE.format(number) for number in range(10, 20))
PROJECT = "<Project><GID>{key}</GID><Name>Load</Name><City>Springfield</City>{lines}</Project>"


def post(path, headers, body):
    """The bytes of a request."""
    text = body.encode()
    lines = [f"POST {path} HTTP/1.1", "Host: 127.0.0.1", *headers, f"Content-Length: {len(text)}"]
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + text


def soap(service, method, parameters):
    body = ENVELOPE.format(service=service, method=method, parameters=parameters)
    headers = ["Content-Type: text/xml; charset=utf-8", f'SOAPAction: "{service}"', "Accept: */*"]
    return post("/soap", headers, body)


def text(value, name="param"):
    return f'<{name} xsi:type="xsd:string">{value}</{name}>'


def get_invoice(number=1001):
    return soap("urn:InvoiceService", "getInvoice", text(f"INV-{number}"))


def get_project(number=3001):
    return soap("urn:ProjectService", "getProject", text(f"PRJ-{number}", "GID"))


def get_project_by_dal(token):
    headers = ["Content-Type: application/json", f"Authorization: Bearer {token}", "Accept: */*"]
    body = json.dumps({"arguments": ["PRJ-3001"]})
    return post("/dal/ProjectService/getExistingProject", headers, body)


def search():
    """For the open invoices, about half of all."""
    criteria = "".join(text("OPEN" if place == 5 else "") for place in range(16))
    return soap("urn:InvoiceService", "searchForInvoices", criteria)


def save(key):
    return soap("urn:ProjectService", "save", PROJECT.format(key=key, lines=LINES))


def login(port):
    """The token of a user of the data access layer."""
    call = urllib.request.Request(
        f"http://127.0.0.1:{port}/dal/AuthenticationService/Login",
        json.dumps({"arguments": ["load", "secret", "1.0", "US"]}).encode(),
        {"Content-Type": "application/json"},
    )
    with urllib.request.urlopen(call) as answer:
        return answer.headers["Session-Token"]
