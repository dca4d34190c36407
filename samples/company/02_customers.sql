-- Customers, their opening documents and their opening balances.

CREATE TABLE Customer (
  CustomerID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY CHECK (length(CustomerID) BETWEEN 1 AND 15),
  CustomerName TEXT NOT NULL CHECK (length(CustomerName) BETWEEN 1 AND 150),
  Address TEXT NOT NULL DEFAULT '',
  City TEXT NOT NULL DEFAULT '',
  Phone TEXT NOT NULL DEFAULT '',
  CreditDays INTEGER NOT NULL DEFAULT 0
) WITHOUT ROWID;
GO
INSERT INTO Customer (CustomerID, CustomerName, Address, City, Phone, CreditDays)
VALUES
  ('C001', 'Aggarwal General Stores', '12 Laxmi Road', 'Pune', '020-24451201', 21),
  ('C002', 'Balaji Provision', '4/5 Tilak Road', 'Pune', '020-24337788', 14),
  ('C003', 'Chauhan & Sons', 'Shop 9, Market Yard', 'Pune', '020-24261190', 21),
  ('C004', 'Deepak Kirana Bhandar', '77 Karve Road', 'Pune', '020-25439012', 7),
  ('C005', 'Everest Super Market', '1 Camp, M. G. Road', 'Pune', '020-26130044', 30),
  ('C006', 'Fernandes & Cia', '18 Rua de Ourém', 'Panjim', '0832-2225567', 30),
  ('C007', 'Ganesh Medical & General', '203 Sinhagad Road', 'Pune', '020-24251133', 14),
  ('C008', 'Hari Om Traders', '56 Nana Peth', 'Pune', '020-26353321', 21),
  ('C009', 'Indira Cooperative Store', 'Sector 21, Nigdi', 'Pimpri', '020-27654400', 45),
  ('C010', 'Jain Brothers', '31 Ravivar Peth', 'Pune', '020-24457612', 21),
  ('C011', 'Kulkarni Bazaar', '8 Kothrud Depot', 'Pune', '020-25389917', 14),
  ('C012', 'Laxmi Stores', '90 Bhavani Peth', 'Pune', '020-26384150', 7),
  ('C013', 'Mahalaxmi Agencies', '5 Station Road', 'Kolhapur', '0231-2654127', 30),
  ('C014', 'New Bombay Stores', '40 F. C. Road', 'Pune', '020-25653098', 21),
  ('C015', 'Om Sai Kirana', '22 Hadapsar Gaon', 'Pune', '020-26872245', 7),
  ('C016', 'Patil & Company', '3 Shivaji Chowk', 'Satara', '02162-234410', 30),
  ('C017', 'Quality Departmental', '11 Aundh Road', 'Pune', '020-25884422', 30),
  ('C018', 'Rajesh Trading Co.', '66 Guruwar Peth', 'Pune', '020-24476534', 21),
  ('C019', 'Shah Wholesale', '17 Timber Market', 'Pune', '020-24268890', 30),
  ('C020', 'Thakkar & Thakkar', '2 Mangalwar Peth', 'Pune', '020-26120937', 21),
  ('C021', 'Usha Novelties', '14 Deccan Gymkhana', 'Pune', '020-25536612', 14),
  ('C022', 'Vijay Stores', '38 Chinchwad Gaon', 'Pimpri', '020-27451908', 14),
  ('C023', 'Walia Provision', '6 Wanowrie Bazaar', 'Pune', '020-26851774', 21),
  ('C024', 'Xavier D''Souza & Bros', '29 Av. São João', 'Margao', '0834-2715533', 30),
  ('C025', 'Yashwant Bhandar', '45 Bibwewadi', 'Pune', '020-24219966', 7),
  ('C026', 'Zaveri Super Shoppe', '10 Koregaon Park', 'Pune', '020-26151002', 30),
  ('C027', 'Milk Parlour – Swargate', 'Bus Stand, Swargate', 'Pune', '020-24441818', 7),
  ('C028', 'Bharat Cold Storage', '7 Gultekdi', 'Pune', '020-24273456', 30),
  ('C029', 'Café Sunrise', 'Deccan Chowk', 'Pune', '020-25676900', 14),
  ('C030', 'Irani & Co.', '3 Moledina Road', 'Pune', '020-26132222', 30),
  ('C031', 'Ekta Mahila Bachat Gat', '19 Yerwada', 'Pune', '020-26686140', 45),
  ('C032', 'Friends Corner', '51 Viman Nagar', 'Pune', '020-26633781', 14),
  ('C033', 'Gurukripa Traders', '27 Solapur Road', 'Baramati', '02112-224455', 30),
  ('C034', 'Hotel Crème', '88 Baner Road', 'Pune', '020-27293344', 14),
  ('C035', 'Inamdar & Associates', '16 Kondhwa', 'Pune', '020-26932710', 21),
  ('C036', 'Joshi Sweet Mart', '1 Sadashiv Peth', 'Pune', '020-24471199', 7),
  ('C037', 'Krishna Dairy', '64 Warje', 'Pune', '020-25230087', 7),
  ('C038', 'Lucky Stores', '12 Wakad', 'Pimpri', '020-27274561', 14),
  ('C039', 'Müller Bäckerei', '5 North Main Road', 'Pune', '020-26158833', 30),
  ('C040', 'Navjeevan Traders', '73 Phaltan Road', 'Baramati', '02112-223390', 30);
GO

-- A document needs a known customer and a date; its amounts carry no sign, the kind of note does.
CREATE TABLE CustomerDebitNote (
  DocumentID INTEGER PRIMARY KEY,
  CustomerID TEXT NOT NULL COLLATE NOCASE REFERENCES Customer,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);
GO
CREATE TABLE CustomerCreditNote (
  DocumentID INTEGER PRIMARY KEY,
  CustomerID TEXT NOT NULL COLLATE NOCASE REFERENCES Customer,
  DocReference TEXT NOT NULL CHECK (length(DocReference) <= 255),
  DocumentDate TEXT NOT NULL,
  Amount REAL NOT NULL CHECK (Amount > 0),
  Balance REAL NOT NULL CHECK (Balance >= 0),
  Narration TEXT NOT NULL
);
GO
-- The account's balance before the first transaction: what its opening documents still come to.
CREATE TABLE CustomerOpeningBalance (
  CustomerID TEXT NOT NULL COLLATE NOCASE PRIMARY KEY REFERENCES Customer,
  OpeningBalance REAL NOT NULL
) WITHOUT ROWID;
GO

INSERT INTO StoredProcedure (name, step, statement, arguments)
VALUES
  ('sp_insert_CustDebitNote', 1,
   'INSERT INTO CustomerDebitNote
      (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  ('sp_insert_CustCreditNote', 1,
   'INSERT INTO CustomerCreditNote
      (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration)
    VALUES (?, ?, date(?), ?, ?, ?)',
   '1,2,3,4,5,6'),
  -- Called once a document: the documents of one customer add up.
  ('sp_acc_import_customeropeningbalance', 1,
   'INSERT INTO CustomerOpeningBalance (CustomerID, OpeningBalance)
    VALUES (?, ?)
    ON CONFLICT (CustomerID) DO UPDATE SET OpeningBalance = OpeningBalance + excluded.OpeningBalance',
   '1,2');
GO
